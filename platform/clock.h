#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstdint>

/// Time, as everything above the seam sees it. They share an
/// object file of their own, so that a test program can link a clock that
/// moves only when the test says so.
namespace zorvel {
namespace platform {

class WakeUp;

/// The local wall clock, in microseconds.
boost::posix_time::ptime localTime();

/// The universal wall clock, in microseconds.
boost::posix_time::ptime universalTime();

/// The same in whole seconds since 1970-01-01, read at a fraction of the cost; it
/// may be behind by a tick of the system.
std::int64_t universalSeconds();

/// Suspends the calling thread for a number of milliseconds (none for zero or
/// less). An interruption point of Boost.Thread, also for zero:
/// boost::thread_interrupted leaves.
void sleepFor(long milliseconds);

/// The same for a thread that somebody else may have to end, who calls `wakeUp`
/// before interrupting it: the call ends the sleep without an exception, which
/// costs more than such a thread. False after the call. An interruption may be
/// noticed or not.
bool sleepUnlessCalled(WakeUp& wakeUp, long milliseconds);

/// The same for so many microseconds, and as exactly as the system can. Where it
/// waits by milliseconds only, a part of one does not count: whoever has a
/// deadline asks the clock again.
bool sleepExactlyUnlessCalled(WakeUp& wakeUp, long microseconds);

}  // namespace platform
}  // namespace zorvel
