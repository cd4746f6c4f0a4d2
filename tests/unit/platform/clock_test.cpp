#include "platform/clock.h"

#include <boost/thread/thread.hpp>

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

// The sleep of the real clock, on threads that can be interrupted and on others.

namespace {

using zorvel::platform::sleepFor;
typedef std::chrono::steady_clock Clock;

const long shortMsec = 30;
const long foreverMsec = 60 * 60 * 1000;

bool sleepsSoLong(long milliseconds)
{
    const Clock::time_point begin = Clock::now();
    sleepFor(milliseconds);
    return Clock::now() - begin >= std::chrono::milliseconds(milliseconds);
}

TEST(Sleep, LastsAsLongOnEveryThread)
{
    const bool onMain = sleepsSoLong(shortMsec);
    bool onOther = false, onBoosts = false;
    std::thread([&] { onOther = sleepsSoLong(shortMsec); }).join();
    boost::thread([&] { onBoosts = sleepsSoLong(shortMsec); }).join();
    EXPECT_TRUE(onMain);
    EXPECT_TRUE(onOther);
    EXPECT_TRUE(onBoosts);
}

TEST(Sleep, NoTimeIsNoSleep)
{
    const Clock::time_point begin = Clock::now();
    sleepFor(0);
    sleepFor(-foreverMsec);
    EXPECT_LT(Clock::now() - begin, std::chrono::minutes(1));
}

TEST(Sleep, EndsWithAnInterruption)
{
    bool isInterrupted = false;
    boost::thread thread([&] {
        try {
            sleepFor(foreverMsec);
        } catch (const boost::thread_interrupted&) {
            isInterrupted = true;
        }
    });
    thread.interrupt();
    thread.join();
    EXPECT_TRUE(isInterrupted);
}

TEST(Sleep, IsAnInterruptionPointWithoutTimeToo)
{
    bool isInterrupted = false;
    boost::thread thread([&] {
        try {
            for (;;)
                sleepFor(0);
        } catch (const boost::thread_interrupted&) {
            isInterrupted = true;
        }
    });
    thread.interrupt();
    thread.join();
    EXPECT_TRUE(isInterrupted);
}

TEST(Sleep, OutlastsAnInterruptionThatIsDisabled)
{
    bool isWhole = false, isStillRequested = false;
    std::promise<void> isDisabled, isRequested;
    boost::thread thread([&] {
        const boost::this_thread::disable_interruption uninterrupted;
        isDisabled.set_value();
        isRequested.get_future().wait();
        isWhole = sleepsSoLong(shortMsec);
        isStillRequested = boost::this_thread::interruption_requested();
    });
    isDisabled.get_future().wait();
    thread.interrupt();
    isRequested.set_value();
    thread.join();
    EXPECT_TRUE(isWhole);
    EXPECT_TRUE(isStillRequested);
}

}  // namespace
