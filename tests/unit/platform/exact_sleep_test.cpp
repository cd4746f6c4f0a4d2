#include "platform/clock.h"
#include "platform/wake_up.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>

// What an exact sleep is where the system keeps microseconds.

namespace {

using zorvel::platform::sleepExactlyUnlessCalled;
using zorvel::platform::WakeUp;
typedef std::chrono::steady_clock Clock;

/// How much later the system may end a wait of the first thread, which runs the tests.
std::string nanosecondsOfSlack()
{
    std::string slack;
    std::ifstream("/proc/self/timerslack_ns") >> slack;
    return slack;
}

/// A part of a millisecond is slept and not spent with looking at the clock.
TEST(ExactSleep, APartOfAMillisecondIsSlept)
{
    WakeUp wakeUp;
    const Clock::time_point begin = Clock::now();
    int sleeps = 0;
    for (; Clock::now() - begin < std::chrono::microseconds(900); ++sleeps)
        EXPECT_TRUE(sleepExactlyUnlessCalled(wakeUp, 900));
    EXPECT_LT(sleeps, 10);
}

TEST(ExactSleep, LeavesTheThreadAsItWas)
{
    const std::string before = nanosecondsOfSlack();
    ASSERT_FALSE(before.empty());
    ASSERT_NE("1", before);
    WakeUp wakeUp;
    EXPECT_TRUE(sleepExactlyUnlessCalled(wakeUp, 500));
    EXPECT_EQ(before, nanosecondsOfSlack());
}

}  // namespace
