#include "tests/multiprocess/fleet.h"
#include "tests/multiprocess/scene.h"

#include <gtest/gtest.h>

#include <iostream>

using namespace zorvel::test;

namespace {

const int processes = 8;
const int holdsEach = 200;

}  // namespace

/// Every worker ends with a status of its own when it finds somebody else
/// inside (see contender.h).
TEST(TakeTurns, EightProcessesAreNeverInsideTogetherAndNobodyStarves)
{
    const Scene scene;
    Fleet fleet(scene.directory(), processes, holdsEach, 0);
    fleet.waitReady();
    fleet.go();
    for (int i = 0; i < processes; ++i)
        EXPECT_EQ(0, fleet[i].finish()) << "worker " << i;

    EXPECT_EQ(processes * holdsEach, fleet.held());
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
    EXPECT_EQ(std::vector<std::string>({"turns"}), scene.tree().names()) << "something was left behind";

    const std::vector<int> turns = scene.turns();
    ASSERT_EQ(static_cast<std::size_t>(processes * holdsEach), turns.size());
    const int gap = longestGap(turns, processes);
    std::cout << "longest run of others' turns between two turns of one process: " << gap << std::endl;
    // With a fair queue it is about the number of processes; somebody who
    // starves sees most of the others' turns go by.
    EXPECT_LT(gap, processes * holdsEach / 4);
}

TEST(TakeTurns, AHolderIsWaitedFor)
{
    const Scene scene;
    Fleet fleet(scene.directory(), 2, 1, 300);
    fleet.waitReady();
    fleet[0].go();
    ASSERT_TRUE(fleet[0].waitHeld(1));
    fleet[1].go();
    ASSERT_TRUE(fleet[1].waitWaiting(1));
    EXPECT_EQ(0, fleet[0].finish());
    EXPECT_EQ(0, fleet[1].finish());
    EXPECT_EQ(std::vector<int>({0, 1}), scene.turns());
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
}
