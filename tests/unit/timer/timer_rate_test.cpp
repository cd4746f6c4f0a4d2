#include <zorvel/timer.h>

#include "tests/support/fake_clock.h"
#include "tests/unit/timer/calls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

// The clock is automatic here: only the timer's own thread moves it, by its
// sleeps and by what its callback takes, so every time below is exact.

namespace {

using namespace zorvel::test;
using boost::posix_time::microseconds;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using boost::posix_time::time_duration;

/// The times of the calls, in microseconds since the timer was set, of a
/// repeating timer that ends after `calls` calls. `take` is what the callback
/// needs, by the number of the call from 0.
std::vector<long long> timesOfCalls(const time_duration& interval, std::size_t calls,
                                    const std::function<time_duration(std::size_t)>& take)
{
    std::vector<long long> times;
    const boost::shared_ptr<zvTimerTask> timer = zvSetTimer(
        [&] {
            times.push_back((fake_clock::now() - fake_clock::start()).total_microseconds());
            fake_clock::advance(take(times.size() - 1));
            if (times.size() == calls)
                throw EndOfTimer();
        },
        interval, true);
    EXPECT_TRUE(eventually([&] { return timer->hasFailed(); }));
    timer->cancel();
    return times;
}

time_duration nothing(std::size_t)
{
    return time_duration(0, 0, 0);
}

std::vector<long long> multiplesOf(long long period, std::size_t count)
{
    std::vector<long long> times;
    for (std::size_t i = 1; i <= count; ++i)
        times.push_back(period * static_cast<long long>(i));
    return times;
}

class TimerRate : public testing::Test
{
    fake_clock::Scope m_clock;
};

TEST_F(TimerRate, CallsAtEveryInterval)
{
    EXPECT_EQ(multiplesOf(1000000, 5), timesOfCalls(seconds(1), 5, nothing));
}

TEST_F(TimerRate, DoesNotDriftOver200PeriodsThoughEveryCallTakesTime)
{
    EXPECT_EQ(multiplesOf(1000000, 200), timesOfCalls(seconds(1), 200, [](std::size_t) { return milliseconds(300); }));
}

TEST_F(TimerRate, DoesNotDriftWhenCallsTakeUnevenTimes)
{
    EXPECT_EQ(multiplesOf(1000000, 200),
              timesOfCalls(seconds(1), 200, [](std::size_t call) { return milliseconds((call * 37) % 1000); }));
}

TEST_F(TimerRate, CatchesUpAtOnceAfterAnOverrun)
{
    // The second call, at 2 s, takes 3.5 s: the calls of 3, 4 and 5 s follow
    // at once, the one of 6 s is in time again.
    const std::vector<long long> expected{1000000, 2000000, 5500000, 5500000, 5500000, 6000000, 7000000};
    EXPECT_EQ(expected, timesOfCalls(seconds(1), 7, [](std::size_t call) {
                  return call == 1 ? milliseconds(3500) : milliseconds(0);
              }));
}

TEST_F(TimerRate, ACallOfExactlyOneIntervalIsFollowedAtOnce)
{
    EXPECT_EQ(multiplesOf(1000000, 10), timesOfCalls(seconds(1), 10, [](std::size_t) { return seconds(1); }));
}

TEST_F(TimerRate, ACallbackThatIsAlwaysTooSlowIsCalledWithoutPause)
{
    const std::vector<long long> expected{1000000, 3000000, 5000000, 7000000};
    EXPECT_EQ(expected, timesOfCalls(seconds(1), 4, [](std::size_t) { return seconds(2); }));
    EXPECT_EQ(std::vector<long>{1000}, fake_clock::sleeps());
}

TEST_F(TimerRate, TheFirstCallComesOneIntervalLater)
{
    EXPECT_EQ(std::vector<long long>{1500000}, timesOfCalls(milliseconds(1500), 1, nothing));
}

TEST_F(TimerRate, WaitsWholeMilliseconds)
{
    // 2999 us: two milliseconds, then nothing but zeros until the clock moves.
    std::atomic<bool> ended(false);
    const boost::shared_ptr<zvTimerTask> timer = zvSetTimer([&] { ended = true; }, microseconds(2999), false);
    EXPECT_TRUE(eventually([] { return fake_clock::sleeps().size() >= 3; }));
    EXPECT_FALSE(ended);
    fake_clock::advance(microseconds(999));
    EXPECT_TRUE(eventually([&] { return ended.load(); }));
    timer->cancel();
    const std::vector<long> sleeps = fake_clock::sleeps();
    EXPECT_EQ(2, sleeps[0]);
    EXPECT_EQ(0, sleeps[1]);
    EXPECT_EQ(0, sleeps[2]);
}

TEST_F(TimerRate, WholeMillisecondsAreWaitedInOne)
{
    timesOfCalls(milliseconds(250), 3, nothing);
    EXPECT_EQ((std::vector<long>{250, 250, 250}), fake_clock::sleeps());
}

TEST_F(TimerRate, AfterAJumpForwardTheCallComesWithTheEndOfTheWait)
{
    fake_clock::reset(fake_clock::manual);
    Happening called;
    const boost::shared_ptr<zvTimerTask> timer = zvSetTimer([&] { called.happen(); }, seconds(10), false);
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    fake_clock::set(fake_clock::now() + seconds(100));
    fake_clock::advance(fake_clock::untilNextWake());
    EXPECT_TRUE(called.waitFor());
    timer->cancel();
    EXPECT_EQ(std::vector<long>{10000}, fake_clock::sleeps());
}

TEST_F(TimerRate, AClockThatMovesBackwardsOnlyLeadsToAFurtherWait)
{
    fake_clock::reset(fake_clock::manual);
    Happening called;
    const boost::shared_ptr<zvTimerTask> timer = zvSetTimer([&] { called.happen(); }, seconds(10), false);
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    fake_clock::set(fake_clock::now() - seconds(5));
    fake_clock::advance(seconds(10));
    // The first wait is over, the clock says that five seconds are left.
    EXPECT_TRUE(eventually([] { return fake_clock::sleeps().size() == 2; }));
    EXPECT_EQ((std::vector<long>{10000, 5000}), fake_clock::sleeps());
    EXPECT_EQ(0u, called.count());
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    fake_clock::advance(seconds(5));
    EXPECT_TRUE(called.waitFor());
    timer->cancel();
}

}  // namespace
