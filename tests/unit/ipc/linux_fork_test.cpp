/// Children made by fork() have the semaphores of their parent.

#include "tests/unit/ipc/linux_scene.h"

#include <atomic>
#include <chrono>
#include <thread>

using namespace zorvel::test;

namespace {

class LinuxFork : public LinuxScene
{
protected:
    /// Whether a newcomer in a child finds it free. What the child opens for
    /// that is its own.
    static bool isFreeForAChild(const std::string& name)
    {
        return inForkedChild([&] { return isFree(name) ? 7 : 8; }) == 7;
    }
};

TEST_F(LinuxFork, AChildMayUseWhatItsParentOpened)
{
    const auto semaphore = opened(freshName());
    EXPECT_TRUE(semaphore->TryAcquire());
    EXPECT_EQ(0, inForkedChild([&] { return semaphore->TryAcquire() ? 1 : semaphore->Release() ? 0 : 2; }));
    EXPECT_TRUE(semaphore->TryAcquire());
}

TEST_F(LinuxFork, AChildThatEndsTakesNothingAlong)
{
    const std::string name = freshName();
    const auto semaphore = opened(name);
    EXPECT_TRUE(semaphore->TryAcquire());
    EXPECT_EQ(0, inForkedChild([] { return 0; }));
    EXPECT_FALSE(isFree(name));
    EXPECT_EQ(1u, files().size());
}

/// As its static objects and those on its stack do where it calls exit().
TEST_F(LinuxFork, AChildThatClosesItsObjectLeavesTheParentsOpen)
{
    const std::string name = freshName();
    auto semaphore = opened(name);
    EXPECT_TRUE(semaphore->TryAcquire());
    EXPECT_EQ(0, inForkedChild([&] {
                  semaphore.reset();
                  return 0;
              }));
    EXPECT_EQ(1u, files().size());
    EXPECT_FALSE(isFree(name));
    EXPECT_FALSE(isFreeForAChild(name));
    EXPECT_TRUE(semaphore->Release());
    EXPECT_TRUE(isFree(name));
    semaphore.reset();
    EXPECT_TRUE(files().empty());
}

/// Whatever the other thread is doing at the moment of the fork.
TEST_F(LinuxFork, AChildDoesNotHoldUpThoseWhoOpenAndClose)
{
    const std::string name = freshName();
    const auto semaphore = opened(name);
    std::atomic<long> turns(0);
    std::atomic<bool> enough(false);
    std::thread other([&] {
        for (; !enough; ++turns)
            opened(name);
    });
    {
        std::vector<std::unique_ptr<IdleFork>> children;
        for (int i = 0; i < 50 && !HasFailure(); ++i) {
            const long before = turns;
            children.emplace_back(new IdleFork);
            for (int msec = 0; msec < 10000 && turns < before + 2; ++msec)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            EXPECT_LT(before + 1, turns) << "fork " << i;
        }
    }
    enough = true;
    other.join();
}

}  // namespace
