/// Waiting for the system's own semaphores.

#include "tests/unit/ipc/real_scene.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

using namespace zorvel::test;

namespace {

typedef std::chrono::steady_clock Clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

class RealWaits : public RealScene
{
};

TEST_F(RealWaits, AFreshSemaphoreIsFreeForOne)
{
    const std::string name = freshName();
    const auto one = opened(name);
    const auto two = opened(name);
    EXPECT_TRUE(one->Acquire(false));
    EXPECT_TRUE(one->OwnsLock());
    EXPECT_FALSE(two->TryAcquire());
    EXPECT_FALSE(one->TryAcquire()) << "an owner waits for itself like anybody";
    EXPECT_TRUE(one->WaitTimedOut());
    EXPECT_TRUE(one->OwnsLock());
    EXPECT_EQ("", messages());
}

/// Who sleeps looks by itself too, every second: nine seconds and more for ten sleeps, if nobody woke it.
TEST_F(RealWaits, AReleaseWakesWhoSleeps)
{
    const std::string name = freshName();
    const auto holder = opened(name);
    const auto waiter = opened(name);
    double waited = 0;
    for (int i = 0; i < 10; ++i) {
        ASSERT_TRUE(holder->Acquire(false));
        std::thread sleeper([&] {
            EXPECT_TRUE(waiter->Acquire(false));
            EXPECT_TRUE(waiter->Release());
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        const Clock::time_point released = Clock::now();
        EXPECT_TRUE(holder->Release());
        sleeper.join();
        waited += secondsSince(released);
    }
    EXPECT_GT(5, waited);
    EXPECT_EQ("", messages());
}

TEST_F(RealWaits, ATimedAcquireEndsAfterItsSeconds)
{
    const std::string name = freshName();
    const auto holder = opened(name);
    EXPECT_TRUE(holder->Acquire(true));
    const auto waiter = opened(name, 1);
    const Clock::time_point start = Clock::now();
    EXPECT_FALSE(waiter->Acquire(true));
    const double seconds = secondsSince(start);
    // The systems count in ticks of up to 16 ms; a machine under load comes back late.
    EXPECT_LE(0.98, seconds);
    EXPECT_GT(30, seconds);
    EXPECT_TRUE(waiter->WaitTimedOut());
    EXPECT_EQ(258u, waiter->LastError());
    EXPECT_FALSE(waiter->OwnsLock());
    EXPECT_EQ("Wait on semaphore '" + name + "' timed out after 1 seconds.\n", messages());
    EXPECT_TRUE(holder->Release());
    EXPECT_TRUE(waiter->Acquire(true));
    EXPECT_EQ("", messages());
}

TEST_F(RealWaits, ATimeOutOfNothingIsATryWithAMessage)
{
    const std::string name = freshName();
    const auto holder = opened(name);
    EXPECT_TRUE(holder->TryAcquire());
    const auto waiter = opened(name, 0);
    EXPECT_FALSE(waiter->Acquire(true));
    EXPECT_TRUE(waiter->WaitTimedOut());
    EXPECT_EQ("Wait on semaphore '" + name + "' timed out after 0 seconds.\n", messages());
    EXPECT_TRUE(holder->Release());
    EXPECT_TRUE(waiter->Acquire(true));
}

/// 4294968 seconds are 704 milliseconds.
TEST_F(RealWaits, ATimeOutThatWrapsIsShort)
{
    const std::string name = freshName();
    const auto holder = opened(name);
    EXPECT_TRUE(holder->TryAcquire());
    const auto waiter = opened(name, 4294968);
    EXPECT_FALSE(waiter->Acquire(true));
    EXPECT_EQ("Wait on semaphore '" + name + "' timed out after 4294968 seconds.\n", messages());
}

TEST_F(RealWaits, AReleaseInTimeEndsATimedWait)
{
    const std::string name = freshName();
    const auto holder = opened(name);
    EXPECT_TRUE(holder->TryAcquire());
    const auto waiter = opened(name, 600);
    std::atomic<bool> waiting(false);
    std::thread thread([&] {
        waiting = true;
        EXPECT_TRUE(waiter->Acquire(true));
    });
    while (!waiting)
        std::this_thread::yield();
    const Clock::time_point start = Clock::now();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(holder->Release());
    thread.join();
    EXPECT_GT(300, secondsSince(start));
    EXPECT_EQ("", messages());
}

/// A negative number of seconds is nearly 50 days.
TEST_F(RealWaits, WaitsWithoutLimitEndWithARelease)
{
    const std::string name = freshName();
    const auto holder = opened(name);
    EXPECT_TRUE(holder->TryAcquire());
    std::atomic<int> got(0);
    std::vector<std::thread> waiters;
    for (int i = 0; i < 4; ++i)
        waiters.emplace_back([&, i] {
            const auto waiter = opened(name, -1);
            EXPECT_TRUE(waiter->Acquire(i % 2 == 0));
            ++got;
            EXPECT_TRUE(waiter->Release());
        });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(0, got);
    EXPECT_TRUE(holder->Release());
    for (std::thread& waiter : waiters)
        waiter.join();
    EXPECT_EQ(4, got);
    EXPECT_TRUE(holder->TryAcquire());
    EXPECT_EQ("", messages());
}

/// One release, one token: of two waiters one goes on. (More than one message
/// at a time would meet in the buffer that all messages share.)
TEST_F(RealWaits, AReleaseLetsOneWaiterGoOn)
{
    const std::string name = freshName();
    const auto holder = opened(name);
    EXPECT_TRUE(holder->TryAcquire());
    std::atomic<int> got(0);
    std::vector<std::thread> waiters;
    for (int i = 0; i < 2; ++i)
        waiters.emplace_back([&] {
            const auto waiter = opened(name, 1);
            if (waiter->Acquire(true))
                ++got;
        });
    EXPECT_TRUE(holder->Release());
    for (std::thread& waiter : waiters)
        waiter.join();
    EXPECT_EQ(1, got);
    EXPECT_FALSE(holder->TryAcquire());
}

TEST_F(RealWaits, ReleasingWhatIsFreeIsRefused)
{
    const std::string name = freshName();
    const auto semaphore = opened(name);
    EXPECT_FALSE(semaphore->Release());
    EXPECT_EQ(releaseFailed(name, codeOfFreeSemaphore()), messages());
    EXPECT_EQ(0u, semaphore->LastError());
    EXPECT_TRUE(semaphore->TryAcquire()) << "there is one token still";
    EXPECT_FALSE(semaphore->TryAcquire()) << "and not two";
    EXPECT_TRUE(semaphore->Release());
    EXPECT_FALSE(semaphore->Release());
    EXPECT_EQ(releaseFailed(name, codeOfFreeSemaphore()), messages());
}

TEST_F(RealWaits, AnybodyMayRelease)
{
    const std::string name = freshName();
    const auto holder = opened(name);
    const auto other = opened(name);
    EXPECT_TRUE(holder->Acquire(false));
    EXPECT_TRUE(other->Release());
    EXPECT_TRUE(holder->OwnsLock()) << "it has not been told";
    EXPECT_TRUE(other->TryAcquire());
    EXPECT_TRUE(holder->Release());
    EXPECT_FALSE(holder->OwnsLock());
    EXPECT_FALSE(other->Release());
    EXPECT_FALSE(other->OwnsLock());
    EXPECT_EQ(releaseFailed(name, codeOfFreeSemaphore()), messages());
}

TEST_F(RealWaits, ManyTurns)
{
    const std::string name = freshName();
    const auto one = opened(name);
    const auto two = opened(name);
    for (int i = 0; i < 2000; ++i) {
        ASSERT_TRUE(one->Acquire(i % 2 == 0));
        ASSERT_FALSE(two->TryAcquire());
        ASSERT_TRUE(one->Release());
        ASSERT_TRUE(two->TryAcquire());
        ASSERT_TRUE(two->Release());
    }
    EXPECT_EQ("", messages());
}

}  // namespace
