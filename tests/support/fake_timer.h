#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstddef>

namespace zorvel {
namespace test {

/// Timers without threads. fake_timer.cpp defines zvSetTimer: a test program
/// that lists it among its own sources has these timers in the library, with
/// their calls made on the test's own thread.
namespace fake_timer {

/// Forgets all timers, those that still run too.
void reset();

/// Timers that were set since reset(), and those of them that run: not
/// cancelled, not failed.
std::size_t set();
std::size_t running();

/// Of the timer that was set last.
boost::posix_time::time_duration lastInterval();
bool lastRepeats();

/// Calls every running timer once. An exception ends the timer and is gone.
void fire();

/// Makes the next zvSetTimer throw boost::thread_resource_error.
void failNext();

}  // namespace fake_timer
}  // namespace test
}  // namespace zorvel
