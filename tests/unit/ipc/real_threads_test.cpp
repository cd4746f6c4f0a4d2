/// The system's own semaphores between threads, each with an object of its own.

#include "tests/unit/ipc/real_scene.h"

#include <atomic>
#include <thread>
#include <vector>

using namespace zorvel::test;

namespace {

const int threads = 8;

class RealThreads : public RealScene
{
protected:
    template <class Work>
    static void inThreads(Work work)
    {
        std::vector<std::thread> all;
        for (int i = 0; i < threads; ++i)
            all.emplace_back(work, i);
        for (std::thread& thread : all)
            thread.join();
    }
};

/// The counter has no protection but the semaphore: it is read and written, but
/// not counted up in one step. It is an atomic one because thread sanitizers do
/// not see that objects which map the file at addresses of their own order what
/// happens.
TEST_F(RealThreads, ExcludeEachOther)
{
    const int holdsEach = 500;
    const std::string name = freshName();
    std::atomic<int> counter(0);
    inThreads([&](int) {
        const auto semaphore = opened(name);
        for (int i = 0; i < holdsEach; ++i) {
            EXPECT_TRUE(semaphore->Acquire(false));
            const int before = counter.load(std::memory_order_relaxed);
            if (i % 16 == 0)
                std::this_thread::yield();
            counter.store(before + 1, std::memory_order_relaxed);
            EXPECT_TRUE(semaphore->Release());
        }
    });
    EXPECT_EQ(threads * holdsEach, counter);
    EXPECT_EQ("", messages());
}

/// Creation and end of the semaphore itself race here.
TEST_F(RealThreads, OpenAndCloseAtTheSameTime)
{
    const int turns = 300;
    const std::string name = freshName();
    std::atomic<int> inside(0);
    std::atomic<int> collisions(0);
    inThreads([&](int) {
        for (int i = 0; i < turns; ++i) {
            const auto semaphore = opened(name);
            EXPECT_TRUE(semaphore->Acquire(false));
            if (++inside != 1)
                ++collisions;
            std::this_thread::yield();
            --inside;
            EXPECT_TRUE(semaphore->Release());
        }
    });
    EXPECT_EQ(0, collisions);
    EXPECT_EQ("", messages());
    EXPECT_TRUE(opened(name)->TryAcquire());
}

/// Few who never wait: every moment the last one goes and the next one comes.
TEST_F(RealThreads, ComeAndGoAtTheSameTime)
{
    const int turns = 10000;
    const std::string name = freshName();
    std::atomic<int> inside(0);
    std::atomic<int> collisions(0);
    const auto comeAndGo = [&] {
        for (int i = 0; i < turns; ++i) {
            const auto semaphore = opened(name);
            if (!semaphore->TryAcquire())
                continue;
            if (++inside != 1)
                ++collisions;
            std::this_thread::yield();
            --inside;
            EXPECT_TRUE(semaphore->Release());
        }
    };
    std::thread one(comeAndGo);
    std::thread two(comeAndGo);
    comeAndGo();
    one.join();
    two.join();
    EXPECT_EQ(0, collisions);
    EXPECT_EQ("", messages());
}

TEST_F(RealThreads, SemaphoresOfManyNamesAtTheSameTime)
{
    const std::string name = freshName();
    inThreads([&](int thread) {
        for (int i = 0; i < 100; ++i) {
            const auto mine = opened(name + '-' + std::to_string(thread));
            EXPECT_TRUE(mine->TryAcquire());
            EXPECT_FALSE(opened(name + '-' + std::to_string(thread))->TryAcquire());
        }
    });
    EXPECT_EQ("", messages());
}

/// Try, timed and endless waits, and a release by another thread.
TEST_F(RealThreads, ReleasedByAnother)
{
    const std::string name = freshName();
    const auto taken = opened(name, 60);
    const auto given = opened(name + "-given");
    EXPECT_TRUE(given->TryAcquire());
    EXPECT_TRUE(taken->TryAcquire());
    std::thread giver([&] {
        const auto mine = opened(name);
        const auto turn = opened(name + "-given");
        for (int i = 0; i < 300; ++i) {
            EXPECT_TRUE(mine->Release());
            EXPECT_TRUE(turn->Acquire(false));
        }
    });
    for (int i = 0; i < 300; ++i) {
        EXPECT_TRUE(taken->Acquire(i % 2 == 0));
        EXPECT_TRUE(given->Release());
    }
    giver.join();
    EXPECT_EQ("", messages());
}

}  // namespace
