#include "tests/multiprocess/scene.h"
#include "tests/multiprocess/semaphore_user.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <memory>

using namespace zorvel::test;

namespace {

const int processes = 8;
const int holdsEach = 1000;

struct Outcome
{
    int collisions = 0;
    /// Of a number that everybody inside counts up, from what was there before.
    int counted = 0;
};

int occurrences(const std::string& text, const std::string& what)
{
    int count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

/// Eight processes go inside as fast as they can.
Outcome race(const std::string& role)
{
    const Scene scene;
    const std::string name = freshSemaphoreName();
    std::vector<std::unique_ptr<SemaphoreUser>> users;
    for (int i = 0; i < processes; ++i)
        users.emplace_back(new SemaphoreUser({role, name, scene.directory(), std::to_string(holdsEach)}));
    for (const auto& user : users)
        EXPECT_EQ("ready", user->hear());
    for (const auto& user : users)
        user->tell("go");
    Outcome outcome;
    for (const auto& user : users) {
        std::string said;
        EXPECT_EQ(0, user->finish(&said));
        EXPECT_EQ(1, occurrences(said, "done"));
        outcome.collisions += occurrences(said, "collision");
    }
    outcome.counted = std::atoi(scene.tree().content("counter").c_str());
    return outcome;
}

}  // namespace

TEST(SemaphoreTurns, EightProcessesAreNeverInsideTogether)
{
    const Outcome outcome = race("guarded");
    EXPECT_EQ(0, outcome.collisions);
    EXPECT_EQ(processes * holdsEach, outcome.counted);
}

/// What the test above would see if the semaphore did nothing.
TEST(SemaphoreTurns, WithoutTheSemaphoreTheyMeet)
{
    const Outcome outcome = race("unguarded");
    EXPECT_LT(0, outcome.collisions);
    EXPECT_GT(processes * holdsEach, outcome.counted);
    std::cout << outcome.collisions << " collisions without the semaphore" << std::endl;
}
