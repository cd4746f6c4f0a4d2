#include "tests/multiprocess/storm.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

using namespace zorvel::test;

namespace {

const int longStorm = 60;

std::chrono::seconds duration()
{
    const char* const seconds = std::getenv("ZORVEL_STORM_SECONDS");
    return std::chrono::seconds(seconds ? std::atoi(seconds) : 5);
}

StormPlan planFor(const std::vector<Part>& parts, std::chrono::seconds seconds = duration())
{
    return StormPlan{parts, seconds, std::chrono::milliseconds(3000), seconds.count() >= longStorm, 1};
}

void play(const StormPlan& plan)
{
    Storm storm(plan);
    storm.run();
    storm.end();
    storm.expectOrder();
    storm.report();
}

}  // namespace

TEST(Storm, OfTheExclusiveLock)
{
    play(planFor(std::vector<Part>(16, Part{"exclusive", 0, 10, 5})));
}

TEST(Storm, OfReadersWritersAndDowngraders)
{
    std::vector<Part> parts;
    for (const char* role : {"reader", "writer", "reader", "downgrader"})
        parts.insert(parts.end(), 4, Part{role, 0, 10, 20});
    play(planFor(parts));
}

/// What a storm tells when there is no lock.
TEST(Storm, WithoutALockTheyMeetInside)
{
    Storm storm(planFor({Part{"unlocked-writer", 0, 5, 5}, Part{"unlocked-reader", 0, 5, 5},
                         Part{"unlocked-writer", 0, 5, 5}, Part{"unlocked-reader", 0, 5, 5}},
                        std::chrono::seconds(2)));
    storm.run();
    storm.end();
    storm.expectViolations();
    storm.report();
}
