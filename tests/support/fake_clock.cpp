#include "tests/support/fake_clock.h"

#include "platform/clock.h"
#include "platform/wake_up.h"

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>
#include <boost/thread/thread_time.hpp>

#include <set>

namespace zorvel {
namespace test {
namespace fake_clock {

namespace {

using boost::posix_time::ptime;
using boost::posix_time::time_duration;

struct State
{
    boost::mutex mutex;
    boost::condition_variable passed;   ///< time has passed
    boost::condition_variable changed;  ///< somebody began or ceased to sleep
    Mode mode = automatic;
    ptime local = start();
    time_duration universalOffset = time_duration(0, 0, 0);
    time_duration elapsed = time_duration(0, 0, 0);
    std::multiset<time_duration> wakings;  ///< of those who sleep, in elapsed time
    std::vector<long> sleeps;
};

State& state()
{
    static State* const only = new State;  // threads of dropped timers may outlive static objects
    return *only;
}

typedef boost::unique_lock<boost::mutex> Lock;

/// Somebody who sleeps, for as long as the object lives: an interruption ends
/// it like the time does.
class Sleeper
{
public:
    Sleeper(State& clock, const time_duration& duration)
        : m_clock(clock), m_self(clock.wakings.insert(clock.elapsed + duration))
    {
        m_clock.changed.notify_all();
    }
    ~Sleeper()
    {
        m_clock.wakings.erase(m_self);
        m_clock.changed.notify_all();
    }
    Sleeper(const Sleeper&) = delete;
    Sleeper& operator=(const Sleeper&) = delete;

    bool sleepsOn() const { return m_clock.elapsed < *m_self; }

private:
    State& m_clock;
    const std::multiset<time_duration>::iterator m_self;
};

void pass(State& clock, const time_duration& duration)
{
    clock.local += duration;
    clock.elapsed += duration;
    clock.passed.notify_all();
}

void sleepFor(const time_duration& duration)
{
    State& clock = state();
    Lock lock(clock.mutex);
    clock.sleeps.push_back(static_cast<long>(duration.total_milliseconds()));
    if (clock.mode == automatic) {
        pass(clock, duration);
        return;
    }
    const Sleeper sleeper(clock, duration);
    while (sleeper.sleepsOn())
        clock.passed.wait(lock);
}

}  // namespace

ptime start()
{
    return ptime(boost::gregorian::date(2031, 3, 14), time_duration(9, 26, 53, 589793));
}

void reset(Mode mode)
{
    State& clock = state();
    const Lock lock(clock.mutex);
    clock.mode = mode;
    clock.local = start();
    clock.universalOffset = time_duration(0, 0, 0);
    clock.sleeps.clear();
}

ptime now()
{
    State& clock = state();
    const Lock lock(clock.mutex);
    return clock.local;
}

void setUniversalOffset(const time_duration& offset)
{
    State& clock = state();
    const Lock lock(clock.mutex);
    clock.universalOffset = offset;
}

void set(const ptime& local)
{
    State& clock = state();
    const Lock lock(clock.mutex);
    clock.local = local;
}

void advance(const time_duration& duration)
{
    State& clock = state();
    const Lock lock(clock.mutex);
    pass(clock, duration);
}

std::vector<long> sleeps()
{
    State& clock = state();
    const Lock lock(clock.mutex);
    return clock.sleeps;
}

bool waitForSleepers(std::size_t count)
{
    State& clock = state();
    Lock lock(clock.mutex);
    const boost::system_time limit = boost::get_system_time() + boost::posix_time::seconds(10);
    return clock.changed.timed_wait(lock, limit, [&] {
        const bool somebodyIsDue = !clock.wakings.empty() && *clock.wakings.begin() <= clock.elapsed;
        return clock.wakings.size() == count && !somebodyIsDue;
    });
}

time_duration untilNextWake()
{
    State& clock = state();
    const Lock lock(clock.mutex);
    return clock.wakings.empty() ? time_duration(0, 0, 0) : *clock.wakings.begin() - clock.elapsed;
}

}  // namespace fake_clock
}  // namespace test

namespace platform {

boost::posix_time::ptime localTime()
{
    return test::fake_clock::now();
}

boost::posix_time::ptime universalTime()
{
    test::fake_clock::State& clock = test::fake_clock::state();
    const boost::lock_guard<boost::mutex> lock(clock.mutex);
    return clock.local + clock.universalOffset;
}

std::int64_t universalSeconds()
{
    static const boost::posix_time::ptime epoch(boost::gregorian::date(1970, 1, 1));
    return (universalTime() - epoch).total_seconds();
}

void sleepFor(long milliseconds)
{
    boost::this_thread::interruption_point();
    test::fake_clock::sleepFor(boost::posix_time::milliseconds(milliseconds > 0 ? milliseconds : 0));
}

/// The interruption that follows the call ends this sleep like any other.
bool sleepUnlessCalled(WakeUp& wakeUp, long milliseconds)
{
    sleepFor(milliseconds);
    return !wakeUp.isCalled();
}

/// As of a system that waits by milliseconds only.
bool sleepExactlyUnlessCalled(WakeUp& wakeUp, long microseconds)
{
    return sleepUnlessCalled(wakeUp, microseconds / 1000);
}

}  // namespace platform
}  // namespace zorvel
