#include "platform/uninterrupted_sleep.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using zorvel::platform::sleepUninterrupted;
typedef std::chrono::steady_clock Clock;

/// Whatever the system's own sleep does: some end up to a tick early.
TEST(Sleep, NeverEndsEarly)
{
    for (long milliseconds = 1; milliseconds <= 25; ++milliseconds) {
        const Clock::time_point begin = Clock::now();
        sleepUninterrupted(milliseconds);
        EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(milliseconds));
    }
}

TEST(Sleep, NoTimeIsNoSleep)
{
    const Clock::time_point begin = Clock::now();
    sleepUninterrupted(0);
    sleepUninterrupted(-1000);
    EXPECT_LT(Clock::now() - begin, std::chrono::minutes(1));
}

}  // namespace
