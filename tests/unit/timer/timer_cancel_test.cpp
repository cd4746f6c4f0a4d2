#include <zorvel/timer.h>

#include "tests/support/fake_clock.h"
#include "tests/unit/timer/calls.h"

#include <boost/thread/thread.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

// The clock is manual here: a timer sleeps until the test lets time pass.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
typedef boost::shared_ptr<zvTimerTask> Timer;

class TimerTask : public testing::Test
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

TEST_F(TimerTask, CancelEndsTheSleepAtOnce)
{
    const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(3600), true);
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    EXPECT_FALSE(timer->hasFailed());
    timer->cancel();  // returns, though no time passes
    EXPECT_TRUE(timer->hasFailed());
    EXPECT_TRUE(fake_clock::waitForSleepers(0));
    fake_clock::advance(seconds(7200));
    EXPECT_EQ(0u, m_called.count());
}

TEST_F(TimerTask, CancelRightAfterSetting)
{
    for (int i = 0; i < 50; ++i) {
        const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), true);
        timer->cancel();
        EXPECT_TRUE(timer->hasFailed());
    }
    fake_clock::advance(seconds(10));
    EXPECT_EQ(0u, m_called.count());
}

TEST_F(TimerTask, NothingIsCalledAfterCancel)
{
    const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), true);
    passInterval();
    ASSERT_TRUE(m_called.waitFor(1));
    passInterval();
    ASSERT_TRUE(m_called.waitFor(2));
    timer->cancel();
    fake_clock::advance(seconds(100));
    EXPECT_EQ(2u, m_called.count());
}

TEST_F(TimerTask, CancelWaitsForARunningCallback)
{
    std::atomic<bool> finished(false);
    Happening mayFinish;
    const Timer timer = zvSetTimer(
        [&] {
            m_called.happen();
            mayFinish.waitFor();  // cannot be interrupted
            finished = true;
        },
        seconds(1), false);
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    boost::thread canceller([&] {
        timer->cancel();
        EXPECT_TRUE(finished);
    });
    mayFinish.happen();
    canceller.join();
}

TEST_F(TimerTask, CancelInterruptsACallbackThatSleeps)
{
    std::atomic<bool> interrupted(false);
    const Timer timer = zvSetTimer(
        [&] {
            m_called.happen();
            try {
                boost::this_thread::sleep(boost::posix_time::hours(1));
            } catch (const boost::thread_interrupted&) {
                interrupted = true;
                throw;
            }
        },
        seconds(1), true);
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    timer->cancel();
    EXPECT_TRUE(interrupted);
    EXPECT_TRUE(timer->hasFailed());
}

TEST_F(TimerTask, CancelTwiceIsHarmless)
{
    const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), true);
    timer->cancel();
    timer->cancel();
    EXPECT_TRUE(timer->hasFailed());
}

TEST_F(TimerTask, CancelAfterTheNormalEndIsHarmless)
{
    const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), false);
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    timer->cancel();
    timer->cancel();
    EXPECT_EQ(1u, m_called.count());
}

TEST_F(TimerTask, ManyThreadsMayCancelAtOnce)
{
    for (int round = 0; round < 20; ++round) {
        const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), true);
        boost::thread_group cancellers;
        for (int i = 0; i < 4; ++i)
            cancellers.create_thread([&] {
                timer->cancel();
                EXPECT_TRUE(timer->hasFailed());
            });
        cancellers.join_all();
    }
    EXPECT_TRUE(fake_clock::waitForSleepers(0));
    EXPECT_EQ(0u, m_called.count());
}

TEST_F(TimerTask, ACallbackThatCancelsItsOwnTimerEndsIt)
{
    Happening handleSet;
    Timer timer;
    timer = zvSetTimer(
        [&] {
            handleSet.waitFor();
            timer->cancel();
            m_called.happen();
        },
        seconds(1), true);
    handleSet.happen();
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    EXPECT_TRUE(eventually([&] { return timer->hasFailed(); }));
    timer->cancel();
    fake_clock::advance(seconds(100));
    EXPECT_EQ(1u, m_called.count());
}

TEST_F(TimerTask, AnExceptionEndsItAndShowsInHasFailed)
{
    const Timer timer = zvSetTimer(
        [&] {
            m_called.happen();
            if (m_called.count() == 2)
                throw EndOfTimer();
        },
        seconds(1), true);
    passInterval();
    ASSERT_TRUE(m_called.waitFor(1));
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    EXPECT_FALSE(timer->hasFailed());
    passInterval();
    ASSERT_TRUE(m_called.waitFor(2));
    EXPECT_TRUE(eventually([&] { return timer->hasFailed(); }));
    fake_clock::advance(seconds(100));
    EXPECT_EQ(2u, m_called.count());
    timer->cancel();
}

TEST_F(TimerTask, WhateverIsThrownEndsIt)
{
    const Timer timer = zvSetTimer([&] { throw 42; }, seconds(1), true);
    passInterval();
    EXPECT_TRUE(eventually([&] { return timer->hasFailed(); }));
}

TEST_F(TimerTask, AnExceptionOfAOneShotShowsInHasFailed)
{
    const Timer timer = zvSetTimer([&] { throw EndOfTimer(); }, seconds(1), false);
    passInterval();
    EXPECT_TRUE(eventually([&] { return timer->hasFailed(); }));
}

TEST_F(TimerTask, AOneShotIsCalledOnceAndHasNotFailed)
{
    const Timer timer = zvSetTimer([&] { m_called.happen(); }, seconds(1), false);
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    EXPECT_TRUE(fake_clock::waitForSleepers(0));
    fake_clock::advance(seconds(100));
    EXPECT_FALSE(timer->hasFailed());
    EXPECT_EQ(1u, m_called.count());
}

TEST_F(TimerTask, AnEmptyCallbackEndsItWhenItIsDue)
{
    for (const bool repeat : {false, true}) {
        const Timer timer = zvSetTimer(boost::function0<void>(), seconds(1), repeat);
        ASSERT_TRUE(fake_clock::waitForSleepers(1));
        EXPECT_FALSE(timer->hasFailed());
        passInterval();
        EXPECT_TRUE(eventually([&] { return timer->hasFailed(); }));
    }
}

TEST_F(TimerTask, ADroppedHandleOfAOneShotStillFires)
{
    zvSetTimer([&] { m_called.happen(); }, seconds(1), false);
    passInterval();
    EXPECT_TRUE(m_called.waitFor());
}

TEST_F(TimerTask, ADroppedHandleOfARepeatingOneGoesOn)
{
    int left = 3;
    zvSetTimer(
        [this, left]() mutable {
            --left;
            m_called.happen();
            if (left == 0)
                throw EndOfTimer();  // or it would call for ever
        },
        seconds(1), true);
    passInterval();
    ASSERT_TRUE(m_called.waitFor(1));
    passInterval();
    ASSERT_TRUE(m_called.waitFor(2));
    passInterval();
    EXPECT_TRUE(m_called.waitFor(3));
}

TEST_F(TimerTask, KeepsACopyOfTheCallback)
{
    boost::function0<void> callback = [&] { m_called.happen(); };
    const Timer timer = zvSetTimer(callback, seconds(1), false);
    callback.clear();
    passInterval();
    EXPECT_TRUE(m_called.waitFor());
    timer->cancel();
}

TEST_F(TimerTask, TheCallbackRunsOnAThreadOfItsOwn)
{
    boost::thread::id caller;
    const Timer timer = zvSetTimer(
        [&] {
            caller = boost::this_thread::get_id();
            m_called.happen();
        },
        seconds(1), false);
    passInterval();
    ASSERT_TRUE(m_called.waitFor());
    EXPECT_NE(boost::this_thread::get_id(), caller);
    timer->cancel();
}

TEST_F(TimerTask, TimersDoNotWaitForEachOther)
{
    Happening other;
    Happening mayFinish;
    const Timer slow = zvSetTimer(
        [&] {
            m_called.happen();
            mayFinish.waitFor();
        },
        seconds(1), false);
    const Timer quick = zvSetTimer([&] { other.happen(); }, seconds(2), true);
    ASSERT_TRUE(fake_clock::waitForSleepers(2));
    fake_clock::advance(seconds(1));
    ASSERT_TRUE(m_called.waitFor());
    ASSERT_TRUE(fake_clock::waitForSleepers(1));
    fake_clock::advance(seconds(1));
    EXPECT_TRUE(other.waitFor());
    mayFinish.happen();
    quick->cancel();
    slow->cancel();
}

}  // namespace
