#include <zorvel/timer.h>

#include "tests/unit/timer/calls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>

// The real clock on a shared machine: orders, counts and generous bounds.

namespace {

using namespace zorvel::test;
using boost::posix_time::hours;
using boost::posix_time::milliseconds;
typedef std::chrono::steady_clock Clock;
typedef boost::shared_ptr<zvTimerTask> Timer;

TEST(TimerOnTheRealClock, AOneShotFiresNotBeforeItsTime)
{
    Happening called;
    const Clock::time_point set = Clock::now();
    const Timer timer = zvSetTimer([&] { called.happen(); }, milliseconds(50), false);
    ASSERT_TRUE(called.waitFor());
    // The wall clock may be adjusted meanwhile; the steady one tells much the same.
    EXPECT_GE(Clock::now() - set, std::chrono::milliseconds(45));
    timer->cancel();
    EXPECT_EQ(1u, called.count());
}

TEST(TimerOnTheRealClock, ARepeatingOneKeepsCalling)
{
    Happening called;
    const Timer timer = zvSetTimer([&] { called.happen(); }, milliseconds(5), true);
    EXPECT_TRUE(called.waitFor(20));
    EXPECT_FALSE(timer->hasFailed());
    timer->cancel();
    const std::size_t count = called.count();
    EXPECT_TRUE(timer->hasFailed());
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_EQ(count, called.count());
}

TEST(TimerOnTheRealClock, CancelReturnsLongBeforeTheIntervalIsOver)
{
    const Timer timer = zvSetTimer([] {}, hours(1), true);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const Clock::time_point begin = Clock::now();
    timer->cancel();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(10));
    EXPECT_TRUE(timer->hasFailed());
}

TEST(TimerOnTheRealClock, CancelEndsAWaitWithoutEnd)
{
    const Timer timer = zvSetTimer([] {}, boost::posix_time::time_duration(boost::posix_time::pos_infin), true);
    timer->cancel();
    EXPECT_TRUE(timer->hasFailed());
}

/// However closely the end meets a call.
TEST(TimerOnTheRealClock, OnceItIsCancelledNoCallIsUnderWayOrBegins)
{
    for (int i = 0; i < 300; ++i) {
        std::atomic<bool> isCalling(false), mayCall(true), wasCalled(false);
        const Timer timer = zvSetTimer(
            [&] {
                isCalling = true;
                if (!mayCall)
                    wasCalled = true;
                isCalling = false;
            },
            boost::posix_time::microseconds(i % 3), true);
        std::this_thread::sleep_for(std::chrono::microseconds(i));
        timer->cancel();
        EXPECT_FALSE(isCalling);
        mayCall = false;
        std::this_thread::yield();
        EXPECT_FALSE(wasCalled);
    }
}

TEST(TimerOnTheRealClock, AnIntervalBelowAMillisecondIsCalledToo)
{
    Happening called;
    const Timer timer = zvSetTimer([&] { called.happen(); }, boost::posix_time::microseconds(300), true);
    EXPECT_TRUE(called.waitFor(10));
    timer->cancel();
}

/// Its deadline is not met early by waits that are cut or rounded.
TEST(TimerOnTheRealClock, APartOfAMillisecondIsNotLeftOut)
{
    Happening called;
    const boost::posix_time::ptime set = boost::posix_time::microsec_clock::local_time();
    boost::posix_time::ptime when;
    const Timer timer = zvSetTimer(
        [&] {
            when = boost::posix_time::microsec_clock::local_time();
            called.happen();
        },
        boost::posix_time::microseconds(10900), false);
    ASSERT_TRUE(called.waitFor());
    timer->cancel();
    EXPECT_GE(when - set, boost::posix_time::microseconds(10900));
}

TEST(TimerOnTheRealClock, ManyTimersAtOnce)
{
    Happening called;
    std::vector<Timer> timers;
    for (int i = 0; i < 30; ++i)
        timers.push_back(zvSetTimer([&] { called.happen(); }, milliseconds(10), true));
    EXPECT_TRUE(called.waitFor(90));
    for (const Timer& timer : timers)
        timer->cancel();
}

}  // namespace
