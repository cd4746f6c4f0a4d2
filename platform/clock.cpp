#include "platform/clock.h"

#include "platform/uninterrupted_sleep.h"
#include "platform/wake_up.h"

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/thread/thread.hpp>

#include <ctime>

namespace zorvel {
namespace platform {

boost::posix_time::ptime localTime()
{
    return boost::posix_time::microsec_clock::local_time();
}

boost::posix_time::ptime universalTime()
{
    return boost::posix_time::microsec_clock::universal_time();
}

std::int64_t universalSeconds()
{
    return std::time(nullptr);
}

/// A thread that cannot be interrupted (one that Boost did not start, for one)
/// needs none of what an interruptible sleep is made of.
void sleepFor(long milliseconds)
{
    boost::this_thread::interruption_point();
    if (milliseconds <= 0)
        return;
    if (boost::this_thread::interruption_enabled())
        boost::this_thread::sleep(boost::posix_time::milliseconds(milliseconds));
    else
        sleepUninterrupted(milliseconds);
}

bool sleepUnlessCalled(WakeUp& wakeUp, long milliseconds)
{
    wakeUp.wait(milliseconds);
    return !wakeUp.isCalled();
}

bool sleepExactlyUnlessCalled(WakeUp& wakeUp, long microseconds)
{
    wakeUp.waitExactly(microseconds);
    return !wakeUp.isCalled();
}

}  // namespace platform
}  // namespace zorvel
