#include <zorvel/timer.h>

zvTimerTask::~zvTimerTask() = default;
