#include "platform/wake_up.h"

#include "platform/punctuality.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/lock_types.hpp>
#include <boost/thread/thread.hpp>

namespace zorvel {
namespace platform {

void WakeUp::call()
{
    {
        const boost::lock_guard<boost::mutex> lock(m_mutex);
        m_isCalled = true;
    }
    m_called.notify_all();
}

void WakeUp::wait(long milliseconds)
{
    if (milliseconds > 0)
        waitFor(boost::posix_time::milliseconds(milliseconds));
}

void WakeUp::waitExactly(long microseconds)
{
    const long kept = keptByWaits(microseconds);
    if (kept <= 0)
        return;
    const PunctualWaits punctual;
    waitFor(boost::posix_time::microseconds(kept));
}

void WakeUp::waitFor(const boost::posix_time::time_duration& duration)
{
    const boost::this_thread::disable_interruption uninterrupted;
    boost::unique_lock<boost::mutex> lock(m_mutex);
    if (!m_isCalled)
        m_called.timed_wait(lock, duration);
}

}  // namespace platform
}  // namespace zorvel
