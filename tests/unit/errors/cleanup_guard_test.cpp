#include <zorvel/errors.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace {

TEST(CleanupGuard, RunsItsCallableOnce)
{
    int calls = 0;
    {
        const zvCleanupFunctionGuard guard([&] { ++calls; });
        EXPECT_EQ(0, calls);
    }
    EXPECT_EQ(1, calls);
}

TEST(CleanupGuard, DisarmedRunsNothing)
{
    int calls = 0;
    {
        zvCleanupFunctionGuard guard([&] { ++calls; });
        guard.disarm();
    }
    EXPECT_EQ(0, calls);
}

TEST(CleanupGuard, DisarmedTwiceIsHarmless)
{
    int calls = 0;
    {
        zvCleanupFunctionGuard guard([&] { ++calls; });
        guard.disarm();
        guard.disarm();
    }
    EXPECT_EQ(0, calls);
}

TEST(CleanupGuard, DisarmLetsGoOfTheCallableAtOnce)
{
    const std::shared_ptr<int> held = std::make_shared<int>(0);
    zvCleanupFunctionGuard guard([held] { ++*held; });
    EXPECT_EQ(2, held.use_count());
    guard.disarm();
    EXPECT_EQ(1, held.use_count());
    EXPECT_EQ(0, *held);
}

TEST(CleanupGuard, KeepsACopyOfTheCallableAndIgnoresItsResult)
{
    int calls = 0;
    {
        std::function<int()> callable = [&] { return ++calls; };
        const zvCleanupFunctionGuard guard(callable);
        callable = nullptr;
    }
    EXPECT_EQ(1, calls);
}

int plainCalls = 0;
void plainFunction()
{
    ++plainCalls;
}

TEST(CleanupGuard, TakesAPlainFunction)
{
    plainCalls = 0;
    {
        const zvCleanupFunctionGuard guard(&plainFunction);
    }
    EXPECT_EQ(1, plainCalls);
}

TEST(CleanupGuard, RunsWhenAnExceptionLeavesTheScope)
{
    int calls = 0;
    EXPECT_THROW(
        {
            const zvCleanupFunctionGuard guard([&] { ++calls; });
            throw std::runtime_error("scope left");
        },
        std::runtime_error);
    EXPECT_EQ(1, calls);
}

TEST(CleanupGuard, AnExceptionOfTheCallableLeavesAndTheCallableIsGone)
{
    const std::shared_ptr<int> held = std::make_shared<int>(0);
    EXPECT_THROW(
        {
            const zvCleanupFunctionGuard guard([held] {
                ++*held;
                throw std::runtime_error("from the callable");
            });
        },
        std::runtime_error);
    EXPECT_EQ(1, *held);
    EXPECT_EQ(1, held.use_count());
}

TEST(CleanupGuard, ACallableMayDisarmItsOwnGuard)
{
    const std::shared_ptr<int> held = std::make_shared<int>(0);
    {
        zvCleanupFunctionGuard* self = nullptr;
        zvCleanupFunctionGuard guard([held, &self] {
            ++*held;
            self->disarm();
        });
        self = &guard;
    }
    EXPECT_EQ(1, *held);
    EXPECT_EQ(1, held.use_count());
}

TEST(CleanupGuard, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible<zvCleanupFunctionGuard>::value);
    EXPECT_FALSE(std::is_copy_assignable<zvCleanupFunctionGuard>::value);
}

}  // namespace
