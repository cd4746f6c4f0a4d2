#include "platform/uninterrupted_sleep.h"

#include <chrono>
#include <thread>

namespace zorvel {
namespace platform {

/// One system call, by the clock that Boost's sleep goes by too.
void sleepUninterrupted(long milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace platform
}  // namespace zorvel
