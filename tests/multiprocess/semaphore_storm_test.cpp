#include "tests/multiprocess/roamers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

using namespace zorvel::test;

namespace {

typedef std::chrono::steady_clock Clock;

const int processes = 16;
/// Some are always left: of the last one or two, one may have the semaphore for
/// itself at the moment in which it opens it anew.
const std::size_t mostVictims = processes - 3;
const int roundsBetweenEnds = 8;

std::chrono::seconds duration()
{
    const char* const seconds = std::getenv("ZORVEL_STORM_SECONDS");
    return std::chrono::seconds(seconds ? std::atoi(seconds) : 5);
}

}  // namespace

/// Everybody inside shows itself there; who finds somebody else says so, and
/// that is no line that is waited for.
TEST(SemaphoreStorm, TheTokenIsLostOnlyWhileSomebodyHasTheSemaphoreOpen)
{
    Roamers roamers(1, processes);
    roamers.startsAlone = true;
    const Clock::time_point end = Clock::now() + duration();
    while ((Clock::now() < end || roamers.visits == 0) && !HasFailure())
        if (roamers.rounds % roundsBetweenEnds == 0)
            roamers.roundWithoutSurvivors();
        else
            roamers.round(mostVictims);
    roamers.end();

    const Clock::time_point asked = Clock::now();
    SemaphoreUser newcomer({"obey", roamers.name()});
    EXPECT_TRUE(newcomer.ask("open"));
    EXPECT_TRUE(newcomer.ask("try"));
    const std::chrono::duration<double> waited = Clock::now() - asked;
    EXPECT_FALSE(newcomer.ask("try"));
    EXPECT_TRUE(newcomer.ask("release"));
    EXPECT_LT(0, roamers.withoutSurvivors);
    roamers.report();
    std::cout << "a newcomer got it after " << waited.count() << " s" << std::endl;
}
