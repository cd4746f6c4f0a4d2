#include <zorvel/timer.h>

#include "tests/support/fake_clock.h"
#include "tests/unit/timer/calls.h"
#include "timer/stoppable.h"

#include <boost/thread/thread.hpp>

#include <gtest/gtest.h>

// A timer that is told to end by somebody who has no time to wait until it has. The clock is manual.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using zorvel::stop;
typedef boost::shared_ptr<zvTimerTask> Timer;

class StoppedTimer : public testing::Test
{
protected:
    /// Lets the only timer's next deadline come.
    void passInterval()
    {
        ASSERT_TRUE(fake_clock::waitForSleepers(1));
        fake_clock::advance(fake_clock::untilNextWake());
    }

    fake_clock::Scope m_clock{fake_clock::manual};
    Happening m_called;
};

TEST_F(StoppedTimer, IsNeverCalledAlthoughItsTimeComes)
{
    for (const bool repeat : {false, true}) {
        const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), repeat);
        ASSERT_TRUE(fake_clock::waitForSleepers(1));
        EXPECT_TRUE(stop(*timer));
        passInterval();  // what ends the fake sleep is its time
        timer->cancel();
        EXPECT_TRUE(timer->hasFailed());
    }
    EXPECT_EQ(0u, m_called.count());
}

TEST_F(StoppedTimer, StaysStopped)
{
    const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), true);
    passInterval();
    ASSERT_TRUE(m_called.waitFor(1));
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    EXPECT_TRUE(stop(*timer));
    EXPECT_TRUE(stop(*timer));
    timer->cancel();
    EXPECT_TRUE(stop(*timer));
    EXPECT_EQ(1u, m_called.count());
}

TEST_F(StoppedTimer, IsNotStoppedWhileItCalls)
{
    Happening mayFinish;
    const Timer timer = zvSetTimer(
        [&] {
            m_called.happen();
            mayFinish.waitFor();
        },
        seconds(1), true);
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    EXPECT_FALSE(stop(*timer));
    mayFinish.happen();
    timer->cancel();
    EXPECT_EQ(1u, m_called.count());
}

TEST_F(StoppedTimer, IsNotStoppedByItsOwnCallback)
{
    Happening handleSet;
    bool isStopped = true;
    Timer timer;
    timer = zvSetTimer(
        [&] {
            handleSet.waitFor();
            isStopped = stop(*timer);
            m_called.happen();
        },
        seconds(1), true);
    handleSet.happen();
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    EXPECT_FALSE(isStopped);
    timer->cancel();
}

TEST_F(StoppedTimer, AfterTheNormalEndOfAOneShotNothingHasFailed)
{
    const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), false);
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    EXPECT_TRUE(eventually([&] { return stop(*timer); }));
    timer->cancel();
    EXPECT_FALSE(timer->hasFailed());
}

TEST_F(StoppedTimer, AnotherKindOfTaskCannotBeStopped)
{
    struct Other : zvTimerTask
    {
        bool hasFailed() const override { return false; }
        void cancel() override {}
    };
    Other other;
    EXPECT_FALSE(stop(other));
}

}  // namespace
