/// Handles of the system's own semaphores: their life, and what happens to
/// those that are closed.

#include "tests/support/child.h"
#include "tests/unit/ipc/real_scene.h"

#include <iostream>
#include <vector>

using namespace zorvel::test;

namespace {

/// Says what its second handle and, after its end, a newcomer meet.
int openTwice(const std::vector<std::string>& arguments)
{
    {
        zvSemaphoreIPC twice(arguments.at(0), 1, false);
        if (!twice.Open() || !twice.Acquire(false) || !twice.Open())
            return 1;
        std::cout << (twice.TryAcquire() ? "free, " : "taken, ");
    }
    zvSemaphoreIPC newcomer(arguments.at(0), 1, false);
    if (!newcomer.Open())
        return 1;
    std::cout << (newcomer.TryAcquire() ? "free" : "taken");
    return 0;
}
const ChildMode openTwiceMode("open-twice", &openTwice);

class RealHandles : public RealScene
{
protected:
    /// Whether somebody who opens the name now finds it free.
    static bool isFree(const std::string& name)
    {
        const auto visitor = opened(name);
        return visitor->TryAcquire() && visitor->Release();
    }
};

TEST_F(RealHandles, ASemaphoreEndsWithItsLastHandle)
{
    const std::string name = freshName();
    auto holder = opened(name);
    auto other = opened(name);
    EXPECT_TRUE(holder->Acquire(false));
    holder.reset();
    EXPECT_FALSE(isFree(name)) << "the end of an object does not release";
    EXPECT_FALSE(other->TryAcquire());
    other.reset();
    EXPECT_TRUE(isFree(name)) << "it is a new one";
    EXPECT_EQ("", messages());
}

TEST_F(RealHandles, SomebodyElseGivesALostTokenBack)
{
    const std::string name = freshName();
    auto holder = opened(name);
    const auto other = opened(name);
    EXPECT_TRUE(holder->Acquire(false));
    holder.reset();
    EXPECT_TRUE(other->Release());
    EXPECT_TRUE(isFree(name));
}

/// In a process of its own, which nothing but its end rids of the first handle.
TEST_F(RealHandles, AHandleOfASecondOpenKeepsTheSemaphoreAlive)
{
    const std::string name = freshName();
    const ChildResult child = runChild("open-twice", {name});
    EXPECT_EQ(0, child.status);
    EXPECT_EQ("taken, taken", child.output);
    EXPECT_EQ("", child.errors);
    EXPECT_TRUE(isFree(name));
}

/// Both objects close the one handle, the second time in vain and in silence.
TEST_F(RealHandles, ASharedHandleIsClosedByTheFirstWhoEnds)
{
    const std::string name = freshName();
    auto source = opened(name);
    zvSemaphoreIPC target("other", 1, false);
    target = *source;
    EXPECT_TRUE(target.TryAcquire());
    EXPECT_FALSE(source->TryAcquire());
    EXPECT_TRUE(source->Release());
    source.reset();
    EXPECT_TRUE(target.IsValid());
    EXPECT_FALSE(target.Acquire(false)) << "nobody waits for a closed handle";
    EXPECT_EQ(waitFailed(name, codeOfClosedHandle()), messages());
    EXPECT_EQ(0u, target.LastError());
    EXPECT_FALSE(target.Acquire(true));
    EXPECT_EQ(waitFailed(name, codeOfClosedHandle()), messages());
    EXPECT_FALSE(target.TryAcquire());
    EXPECT_EQ(waitFailed(name, codeOfClosedHandle()), messages());
    EXPECT_FALSE(target.Release());
    EXPECT_EQ(releaseFailed(name, codeOfClosedHandle()), messages());
    EXPECT_FALSE(target.OwnsLock());
}

TEST_F(RealHandles, ADoubleCloseIsSilent)
{
    const std::string name = freshName();
    {
        zvSemaphoreIPC target("other", 1, false);
        const auto source = opened(name);
        target = *source;
        EXPECT_TRUE(target.Acquire(false));
    }
    EXPECT_EQ("", messages());
    EXPECT_TRUE(isFree(name));
}

TEST_F(RealHandles, AClosedObjectCanBeOpenedAgain)
{
    const std::string name = freshName();
    zvSemaphoreIPC semaphore("other", 1, false);
    semaphore = *opened(name);
    EXPECT_FALSE(semaphore.TryAcquire());
    messages();
    EXPECT_TRUE(semaphore.Open());
    EXPECT_TRUE(semaphore.TryAcquire());
    EXPECT_FALSE(isFree(name));
    EXPECT_TRUE(semaphore.Release());
    EXPECT_EQ("", messages());
}

TEST_F(RealHandles, ManyHandlesOfOneSemaphore)
{
    const std::string name = freshName();
    std::vector<std::unique_ptr<zvSemaphoreIPC>> all;
    for (int i = 0; i < 300; ++i)
        all.push_back(opened(name));
    for (int holder = 0; holder < 300; holder += 60) {
        EXPECT_TRUE(all[holder]->TryAcquire());
        for (const auto& other : all)
            ASSERT_FALSE(other->TryAcquire());
        EXPECT_TRUE(all[299 - holder]->Release());
    }
    while (all.size() > 1)
        all.erase(all.begin());
    EXPECT_TRUE(all[0]->TryAcquire()) << "the last handle is as good as the first";
    all.clear();
    EXPECT_TRUE(isFree(name));
    EXPECT_EQ("", messages());
}

TEST_F(RealHandles, ManySemaphores)
{
    std::vector<std::unique_ptr<zvSemaphoreIPC>> all;
    const std::string name = freshName();
    for (int i = 0; i < 300; ++i)
        all.push_back(opened(name + '-' + std::to_string(i)));
    for (const auto& semaphore : all)
        ASSERT_TRUE(semaphore->TryAcquire());
    for (const auto& semaphore : all)
        ASSERT_FALSE(semaphore->TryAcquire());
    EXPECT_EQ("", messages());
}

TEST_F(RealHandles, OpenedAndClosedAgainAndAgain)
{
    const std::string name = freshName();
    for (int i = 0; i < 2000; ++i)
        ASSERT_TRUE(opened(name)->TryAcquire()) << i;
    EXPECT_EQ("", messages());
}

}  // namespace
