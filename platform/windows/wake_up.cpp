#include "platform/wake_up.h"

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/lock_types.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

#include <atomic>

namespace zorvel {
namespace platform {

struct WakeUp::State
{
    boost::mutex mutex;
    boost::condition_variable called;
    std::atomic<bool> isCalled{false};
};

WakeUp::WakeUp() : m_state(new State) {}

WakeUp::~WakeUp() = default;

void WakeUp::call()
{
    {
        const boost::lock_guard<boost::mutex> lock(m_state->mutex);
        m_state->isCalled = true;
    }
    m_state->called.notify_all();
}

bool WakeUp::isCalled() const
{
    return m_state->isCalled;
}

void WakeUp::wait(long milliseconds)
{
    if (milliseconds <= 0)
        return;
    const boost::this_thread::disable_interruption uninterrupted;
    boost::unique_lock<boost::mutex> lock(m_state->mutex);
    if (!m_state->isCalled)
        m_state->called.timed_wait(lock, boost::posix_time::milliseconds(milliseconds));
}

void WakeUp::waitExactly(long microseconds)
{
    wait(microseconds / 1000);
}

}  // namespace platform
}  // namespace zorvel
