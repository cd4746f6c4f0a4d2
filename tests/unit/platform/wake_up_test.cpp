#include "platform/wake_up.h"

#include "platform/clock.h"

#include <boost/thread/thread.hpp>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

using zorvel::platform::sleepExactlyUnlessCalled;
using zorvel::platform::sleepUnlessCalled;
using zorvel::platform::WakeUp;
typedef std::chrono::steady_clock Clock;

const long shortMsec = 30;
const long foreverMsec = 60 * 60 * 1000;
/// As long as every system's type can tell.
const long foreverMicrosec = 30 * 60 * 1000 * 1000;

TEST(WakeUp, WithoutACallASleepLasts)
{
    WakeUp wakeUp;
    const Clock::time_point begin = Clock::now();
    while (Clock::now() - begin < std::chrono::milliseconds(shortMsec))
        EXPECT_TRUE(sleepUnlessCalled(wakeUp, shortMsec));
    EXPECT_LT(Clock::now() - begin, std::chrono::minutes(1));
}

TEST(WakeUp, WithoutACallAnExactSleepLastsToo)
{
    WakeUp wakeUp;
    const std::chrono::microseconds whole(30500);
    std::chrono::microseconds rest = whole;
    const Clock::time_point begin = Clock::now();
    while (rest.count() > 0) {
        EXPECT_TRUE(sleepExactlyUnlessCalled(wakeUp, static_cast<long>(rest.count())));
        rest = whole - std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
    }
    EXPECT_LT(Clock::now() - begin, std::chrono::minutes(1));
}

TEST(WakeUp, NoTimeIsNoSleep)
{
    WakeUp wakeUp;
    EXPECT_TRUE(sleepExactlyUnlessCalled(wakeUp, 0));
    EXPECT_TRUE(sleepExactlyUnlessCalled(wakeUp, -foreverMsec));
    EXPECT_TRUE(sleepUnlessCalled(wakeUp, 0));
    EXPECT_TRUE(sleepUnlessCalled(wakeUp, -foreverMsec));
}

TEST(WakeUp, NoSleepLastsAfterTheCall)
{
    WakeUp wakeUp;
    wakeUp.call();
    wakeUp.call();
    EXPECT_FALSE(sleepUnlessCalled(wakeUp, foreverMsec));
    EXPECT_FALSE(sleepUnlessCalled(wakeUp, 0));
    EXPECT_FALSE(sleepExactlyUnlessCalled(wakeUp, foreverMicrosec));
    EXPECT_FALSE(sleepExactlyUnlessCalled(wakeUp, 0));
}

TEST(WakeUp, TheCallEndsASleepThatHasBegun)
{
    WakeUp wakeUp;
    std::thread sleeper([&] {
        while (sleepUnlessCalled(wakeUp, foreverMsec)) {
        }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(shortMsec));
    wakeUp.call();
    sleeper.join();
    EXPECT_TRUE(wakeUp.isCalled());
}

TEST(WakeUp, TheCallEndsAnExactSleepThatHasBegun)
{
    WakeUp wakeUp;
    std::thread sleeper([&] {
        while (sleepExactlyUnlessCalled(wakeUp, foreverMicrosec)) {
        }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(shortMsec));
    wakeUp.call();
    sleeper.join();
    EXPECT_TRUE(wakeUp.isCalled());
}

/// Whoever is interrupted was called before, and ends by that.
TEST(WakeUp, ASleepThatWasCalledThrowsNothing)
{
    WakeUp wakeUp;
    bool isEnded = false;
    boost::thread sleeper([&] {
        while (sleepUnlessCalled(wakeUp, foreverMsec)) {
        }
        isEnded = true;
    });
    wakeUp.call();
    sleeper.interrupt();
    sleeper.join();
    EXPECT_TRUE(isEnded);
}

}  // namespace
