#pragma once

#include <zorvel/timer.h>

namespace zorvel {

/// What the library's own timers can do besides what every task can.
class StoppableTimer
{
public:
    /// Tells a timer to end and does not wait until it has: that is for cancel(), which must follow. True when it calls
    /// no more from now on; false when it is just calling. Any thread.
    virtual bool stop() = 0;

protected:
    ~StoppableTimer() = default;
};

/// The same for any task; false for one that cannot be stopped like this.
inline bool stop(zvTimerTask& task)
{
    StoppableTimer* const timer = dynamic_cast<StoppableTimer*>(&task);
    return timer && timer->stop();
}

}  // namespace zorvel
