#include <zorvel/timer.h>

#include "tests/support/fake_clock.h"
#include "tests/unit/timer/calls.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace zorvel::test;
using boost::posix_time::hours;
using boost::posix_time::microseconds;
using boost::posix_time::seconds;
using boost::posix_time::time_duration;
typedef boost::shared_ptr<zvTimerTask> Timer;

/// The greatest duration that is an ordinary one.
const time_duration longest(hours(24 * 365) * 200000);

class TimerInterval : public testing::Test
{
protected:
    Timer set(const time_duration& interval, bool repeat)
    {
        return zvSetTimer([this] { m_called.happen(); }, interval, repeat);
    }

    /// Sets a timer that calls again and again without a pause, and ends then.
    void expectCallsAtOnce(const time_duration& interval, std::size_t times = 3)
    {
        const Timer timer = zvSetTimer(
            [this, times] {
                m_called.happen();
                if (m_called.count() == times)
                    throw EndOfTimer();
            },
            interval, true);
        EXPECT_TRUE(m_called.waitFor(times));
        timer->cancel();
        EXPECT_TRUE(fake_clock::sleeps().empty());
        EXPECT_EQ(fake_clock::start(), fake_clock::now());
    }

    void expectWaitsUntilCancelled(const time_duration& interval)
    {
        for (const bool repeat : {false, true}) {
            const Timer timer = set(interval, repeat);
            ASSERT_TRUE(fake_clock::waitForSleepers(1));
            for (int i = 0; i < 100; ++i) {
                fake_clock::advance(hours(24));
                ASSERT_TRUE(fake_clock::waitForSleepers(1));
            }
            EXPECT_FALSE(timer->hasFailed());
            timer->cancel();
            EXPECT_TRUE(timer->hasFailed());
        }
        EXPECT_EQ(0u, m_called.count());
    }

    fake_clock::Scope m_clock{fake_clock::manual};
    Happening m_called;
};

TEST_F(TimerInterval, ZeroCallsAtOnce)
{
    expectCallsAtOnce(seconds(0));
}

TEST_F(TimerInterval, ANegativeOneCallsAtOnce)
{
    expectCallsAtOnce(seconds(-5));
}

TEST_F(TimerInterval, NegativeInfinityCallsAtOnce)
{
    expectCallsAtOnce(time_duration(boost::posix_time::neg_infin));
}

TEST_F(TimerInterval, AHugeNegativeOneCallsAtOnce)
{
    expectCallsAtOnce(-longest);
}

/// Deadlines counted on from each other would leave the range of the clock.
TEST_F(TimerInterval, ANegativeOneOfNinetyYearsCallsAtOnceForEver)
{
    expectCallsAtOnce(-hours(24 * 365 * 90), 10000);
}

TEST_F(TimerInterval, ANegativeOneShotCallsOnce)
{
    const Timer timer = set(seconds(-1), false);
    EXPECT_TRUE(m_called.waitFor());
    timer->cancel();
    EXPECT_EQ(1u, m_called.count());
}

TEST_F(TimerInterval, NotADateTimeEndsItFailedAtOnce)
{
    for (const bool repeat : {false, true}) {
        const Timer timer = set(time_duration(boost::posix_time::not_a_date_time), repeat);
        EXPECT_TRUE(eventually([&] { return timer->hasFailed(); }));
        timer->cancel();
    }
    EXPECT_EQ(0u, m_called.count());
}

TEST_F(TimerInterval, PositiveInfinityWaitsUntilCancelled)
{
    expectWaitsUntilCancelled(time_duration(boost::posix_time::pos_infin));
}

TEST_F(TimerInterval, AHugeOneWaitsUntilCancelled)
{
    expectWaitsUntilCancelled(longest);
}

TEST_F(TimerInterval, AHundredDaysAreWaitedWhole)
{
    const Timer timer = set(hours(24 * 100), false);
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    const boost::posix_time::ptime due = fake_clock::start() + hours(24 * 100);
    while (fake_clock::now() + fake_clock::untilNextWake() < due) {
        fake_clock::advance(fake_clock::untilNextWake());
        ASSERT_TRUE(fake_clock::waitForSleepers(1));
    }
    EXPECT_EQ(0u, m_called.count());
    fake_clock::advance(fake_clock::untilNextWake());
    EXPECT_TRUE(m_called.waitFor());
    EXPECT_EQ(due, fake_clock::now());
    timer->cancel();
}

/// The last sleep is an exact one, of which this clock keeps whole milliseconds.
TEST_F(TimerInterval, WhatIsLeftOfALongOneIsSleptToTheEnd)
{
    const Timer timer = set(microseconds(1000500), false);
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    fake_clock::advance(fake_clock::untilNextWake());
    EXPECT_TRUE(eventually([] { return fake_clock::sleeps().size() >= 3; }));
    EXPECT_EQ(0u, m_called.count());
    fake_clock::advance(microseconds(500));
    EXPECT_TRUE(m_called.waitFor());
    timer->cancel();
    EXPECT_EQ(1000, fake_clock::sleeps().front());
    EXPECT_EQ(0, fake_clock::sleeps().back());
}

TEST_F(TimerInterval, OneMicrosecondIsWaitedByTestingAgain)
{
    const Timer timer = set(microseconds(1), false);
    EXPECT_TRUE(eventually([] { return fake_clock::sleeps().size() >= 2; }));
    EXPECT_EQ(0u, m_called.count());
    fake_clock::advance(microseconds(1));
    EXPECT_TRUE(m_called.waitFor());
    timer->cancel();
    for (const long sleep : fake_clock::sleeps())
        ASSERT_EQ(0, sleep);
}

}  // namespace
