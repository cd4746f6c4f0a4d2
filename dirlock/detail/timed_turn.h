#pragma once

#include "platform/clock.h"
#include "timer/deadline.h"

#include <boost/thread/locks.hpp>
#include <boost/thread/mutex.hpp>

namespace zorvel {
namespace dirlock {

/// The turn of one thread at a lock object: its internal mutex, waited for
/// until a timeout has passed on the universal clock and given back at the end
/// of the scope. Boost's timed wait takes ordinary times only, so the special
/// ones are told apart here: without limit, or a single try.
class TimedTurn
{
public:
    TimedTurn(boost::timed_mutex& mutex, const boost::posix_time::time_duration& timeout)
        : m_lock(mutex, boost::defer_lock)
    {
        const boost::posix_time::ptime now = platform::universalTime();
        const boost::posix_time::ptime deadline = deadlineAfter(now, timeout);
        if (deadline.is_pos_infinity())
            m_lock.lock();
        else if (hasCome(deadline, now))
            m_lock.try_lock();
        else
            m_lock.timed_lock(deadline);
    }

    /// Whether the turn came in time.
    explicit operator bool() const { return m_lock.owns_lock(); }

private:
    boost::unique_lock<boost::timed_mutex> m_lock;
};

}  // namespace dirlock
}  // namespace zorvel
