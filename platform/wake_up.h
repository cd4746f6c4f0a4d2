#pragma once

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>

#include <atomic>

namespace zorvel {
namespace platform {

/// A call that wakes whoever waits for it, once and for good: no later wait
/// lasts. Any thread may call and wait.
class WakeUp
{
public:
    WakeUp() : m_isCalled(false) {}

    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    void call();
    bool isCalled() const { return m_isCalled; }

    /// Suspends the calling thread for a number of milliseconds (none for zero
    /// or less) by a clock that nobody sets, or until the call, and not at all
    /// after it. A wait may end early. No interruption point of Boost.Thread.
    void wait(long milliseconds);

    /// The same for so many microseconds, as exactly as the system keeps them.
    /// Where that is not to the microsecond a part of a millisecond is no wait.
    void waitExactly(long microseconds);

private:
    void waitFor(const boost::posix_time::time_duration& duration);

    boost::mutex m_mutex;
    boost::condition_variable m_called;
    std::atomic<bool> m_isCalled;
};

}  // namespace platform
}  // namespace zorvel
