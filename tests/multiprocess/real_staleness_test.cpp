#include "tests/multiprocess/fleet.h"
#include "tests/multiprocess/scene.h"

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>

using namespace zorvel::test;

/// Nothing is aged here: the killed holder's file goes stale by itself.
TEST(RealStaleness, AKilledHoldersLockIsTakenOverAfterThirtySeconds)
{
    const Scene scene;
    Fleet fleet(scene.directory(), 3, 1, 60 * 1000);
    fleet.waitReady();
    fleet[0].go();
    ASSERT_TRUE(fleet[0].waitHeld(1));
    const auto killed = std::chrono::steady_clock::now();
    fleet[0].kill();
    fleet[0].finish();
    scene.tree().removeDirectory("inside");

    fleet[1].go();
    ASSERT_TRUE(fleet[1].waitHeld(1));
    const auto waited = std::chrono::steady_clock::now() - killed;
    std::cout << "taken over after " << std::chrono::duration<double>(waited).count() << " s" << std::endl;
    // The last refresh lies at most a second (and a slow machine's delay)
    // before the kill; file times have whole seconds.
    EXPECT_GT(waited, std::chrono::seconds(25));
    EXPECT_LT(waited, std::chrono::seconds(60));

    // A live holder's lock does not go stale: it is still his.
    fleet[2].go();
    ASSERT_TRUE(fleet[2].waitWaiting(1));
    EXPECT_EQ(std::vector<std::string>({".deploy_lock.0"}), std::vector<std::string>({scene.lockFiles().at(0)}));
    EXPECT_EQ(0, fleet[2].held());
    fleet[1].kill();
    fleet[2].kill();
}
