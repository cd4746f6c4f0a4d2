#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace zorvel {

/// A point in time that lies a timeout after now. Special values follow
/// Boost's arithmetic; a duration of more than a hundred years either way
/// counts as infinite: the sum could leave what the clock, or a timed wait in
/// nanoseconds, can hold.
inline boost::posix_time::ptime deadlineAfter(const boost::posix_time::ptime& now,
                                              const boost::posix_time::time_duration& timeout)
{
    const boost::posix_time::time_duration limit = boost::posix_time::hours(24 * 365 * 100);
    if (timeout.is_special())
        return now + timeout;
    if (timeout > limit)
        return boost::posix_time::ptime(boost::posix_time::pos_infin);
    if (timeout < -limit)
        return boost::posix_time::ptime(boost::posix_time::neg_infin);
    return now + timeout;
}

/// Whether a deadline has come. Not-a-date-time always has, so that nobody
/// waits for ever by mistake; positive infinity never has.
inline bool hasCome(const boost::posix_time::ptime& deadline, const boost::posix_time::ptime& now)
{
    return deadline.is_not_a_date_time() || deadline <= now;
}

/// Whether a deadline lies before now: unlike hasCome, not yet at its very
/// microsecond.
inline bool hasPassed(const boost::posix_time::ptime& deadline, const boost::posix_time::ptime& now)
{
    return deadline.is_not_a_date_time() || deadline < now;
}

}  // namespace zorvel
