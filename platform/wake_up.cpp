#include "platform/wake_up.h"

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
    if (milliseconds <= 0)
        return;
    const boost::this_thread::disable_interruption uninterrupted;
    boost::unique_lock<boost::mutex> lock(m_mutex);
    if (!m_isCalled)
        m_called.timed_wait(lock, boost::posix_time::milliseconds(milliseconds));
}

}  // namespace platform
}  // namespace zorvel
