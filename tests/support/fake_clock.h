#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstddef>
#include <vector>

namespace zorvel {
namespace test {

/// Time that moves only when a test says so. fake_clock.cpp defines the
/// functions of platform/clock.h: a test program that lists it among its own
/// sources has this clock everywhere in the library.
///
/// Two things are kept apart: the wall clock, which a test may set to anything
/// (backwards too), and the time that passes, which sleepers wait for. All
/// members may be called from any thread.
namespace fake_clock {

enum Mode
{
    automatic,  ///< a sleep returns at once and moves the clock by its length
    manual,     ///< a sleep lasts until advance() has let its time pass
};

/// The local time at which reset() leaves the clock; universal time is the
/// same until setUniversalOffset().
boost::posix_time::ptime start();

/// Puts everything back: the start time, no offset, an empty list of sleeps.
/// Nobody may be sleeping.
void reset(Mode mode = automatic);

boost::posix_time::ptime now();

/// Universal time is local time plus this.
void setUniversalOffset(const boost::posix_time::time_duration& offset);

/// Sets the wall clock; no time passes, sleepers sleep on.
void set(const boost::posix_time::ptime& local);

/// Lets time pass: the wall clock moves, and sleepers whose time has come wake.
void advance(const boost::posix_time::time_duration& duration);

/// Every sleep so far, in milliseconds, in the order in which they began.
std::vector<long> sleeps();

/// Waits until `count` threads are asleep and none of them is about to wake
/// (manual mode) and returns true, or false after ten real seconds.
bool waitForSleepers(std::size_t count);

/// How long the next thread to wake has yet to sleep; zero when none sleeps.
boost::posix_time::time_duration untilNextWake();

/// Sets the clock back to its start for the length of a test.
class Scope
{
public:
    explicit Scope(Mode mode = automatic) { reset(mode); }
    ~Scope() { reset(automatic); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

}  // namespace fake_clock
}  // namespace test
}  // namespace zorvel
