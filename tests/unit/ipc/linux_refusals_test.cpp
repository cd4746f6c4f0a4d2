/// Systems that refuse: no room, no permission, no /dev/shm, no descriptors.

#include "tests/support/child.h"
#include "tests/unit/ipc/linux_scene.h"

#include <cerrno>
#include <iostream>

using namespace zorvel::test;

namespace {

namespace fs = std::filesystem;

/// Says what a visitor of a semaphore meets.
int visit(const std::vector<std::string>& arguments)
{
    zvSemaphoreIPC semaphore(arguments.at(0), 1, false);
    if (!semaphore.Open())
        std::cout << "refused";
    else
        std::cout << (semaphore.TryAcquire() ? "got it" : "taken");
    return 0;
}
const ChildMode visitMode("visit", &visit);

class LinuxRefusals : public LinuxScene
{
protected:
    static ChildResult visitAsSomebodyElse(const std::string& name)
    {
        ProcessOptions options;
        options.unprivileged = true;
        return runChild("visit", {name}, options);
    }

    /// Takes all the room that is left.
    static void fill(const std::string& path)
    {
        std::ofstream file(path, std::ios::binary);
        const std::string page(4096, 'x');
        while (file << page << std::flush) {
        }
    }
};

TEST_F(LinuxRefusals, NoRoomForItsContent)
{
    memory.limitBytes(4 * 4096);
    const std::string filler = directory() + std::string("/filler");
    fill(filler);
    const std::string name = freshName();
    expectRefused(name, ENOSPC);
    EXPECT_EQ(std::vector<std::string>{"filler"}, files());
    fs::remove(filler);
    EXPECT_TRUE(isFree(name));
}

TEST_F(LinuxRefusals, NoRoomForItsContentThoughItsNameIsThere)
{
    memory.limitBytes(4 * 4096);
    const std::string name = freshName();
    write(fileOf(name), "");
    fill(directory() + std::string("/filler"));
    expectRefused(name, ENOSPC);
}

/// Opens a semaphore in a process whose files may not grow.
int openWithoutFiles(const std::vector<std::string>& arguments)
{
    const NoGrowth limit;
    zvSemaphoreIPC semaphore(arguments.at(0), 1, false);
    return semaphore.Open() ? 0 : 1;
}
const ChildMode withoutFilesMode("without-files", &openWithoutFiles);

TEST_F(LinuxRefusals, NoFilesOfAnySize)
{
    const std::string name = freshName();
    const ChildResult child = runChild("without-files", {name});
    EXPECT_EQ(1, child.status) << "the signal that ends a process at its limit is not met";
    EXPECT_TRUE(files().empty());
}

TEST_F(LinuxRefusals, NoRoomForAFile)
{
    memory.limitFiles(1);
    const std::string name = freshName();
    const auto one = opened(name);
    expectRefused(freshName(), ENOSPC);
    EXPECT_FALSE(opened(name)->Release()) << "what is there can be opened";
    messages();
    EXPECT_TRUE(one->TryAcquire());
}

TEST_F(LinuxRefusals, NoDirectory)
{
    const std::string name = freshName();
    const auto old = opened(name);
    {
        const OwnSharedMemory::Missing missing;
        expectRefused(freshName(), ENOENT);
        expectRefused(name, ENOENT);
        EXPECT_TRUE(old->TryAcquire()) << "what is open works on";
        EXPECT_TRUE(old->Release());
        const auto closed = std::make_shared<zvSemaphoreIPC>(*old);
    }
    EXPECT_TRUE(isFree(name));
}

TEST_F(LinuxRefusals, AReadOnlyDirectory)
{
    const std::string name = freshName();
    auto old = opened(name);
    EXPECT_TRUE(old->TryAcquire());
    memory.makeReadOnly();
    expectRefused(freshName(), EROFS);
    EXPECT_TRUE(old->Release());
    EXPECT_TRUE(old->TryAcquire());
    old.reset();
    EXPECT_EQ(1u, files().size()) << "it cannot be removed now";
    memory.makeWritable();
    EXPECT_TRUE(isFree(name)) << "but its token is gone";
    EXPECT_TRUE(files().empty());
    EXPECT_EQ("", messages());
}

TEST_F(LinuxRefusals, AnotherUserIsRefusedByTheMask)
{
    const std::string name = freshName();
    const FileMask mask(077);
    const auto mine = opened(name);
    const ChildResult visitor = visitAsSomebodyElse(name);
    EXPECT_EQ("refused", visitor.output);
    EXPECT_EQ(openFailed(name, EACCES), visitor.errors);
    EXPECT_TRUE(mine->TryAcquire());
}

TEST_F(LinuxRefusals, AnotherUserMayNotShareWhatItMayOnlyRead)
{
    const std::string name = freshName();
    const FileMask mask(022);
    const auto mine = opened(name);
    const ChildResult visitor = visitAsSomebodyElse(name);
    EXPECT_EQ("refused", visitor.output);
    EXPECT_EQ(openFailed(name, EACCES), visitor.errors);
}

TEST_F(LinuxRefusals, AnotherUserSharesWhatTheMaskLeavesToAll)
{
    const std::string name = freshName();
    const FileMask mask(0);
    auto mine = opened(name);
    EXPECT_TRUE(mine->TryAcquire());
    ChildResult visitor = visitAsSomebodyElse(name);
    EXPECT_EQ("taken", visitor.output);
    EXPECT_EQ("", visitor.errors);
    EXPECT_TRUE(mine->Release());
    EXPECT_EQ("got it", visitAsSomebodyElse(name).output);
    EXPECT_FALSE(mine->TryAcquire()) << "the visitor did not give it back";
    mine.reset();
    EXPECT_TRUE(isFree(name));
}

/// The directory lets nobody but the owner remove a file. What stays is a file,
/// and no token.
TEST_F(LinuxRefusals, AnotherUserMayNotRemoveTheFile)
{
    const std::string name = freshName();
    const FileMask mask(0);
    std::string left;
    {
        const auto mine = opened(name);
        left = directory() + ('/' + files().at(0));
        fs::create_hard_link(left, directory() + std::string("/kept"));
    }
    fs::rename(directory() + std::string("/kept"), left);
    EXPECT_EQ("got it", visitAsSomebodyElse(name).output);
    EXPECT_EQ(1u, files().size());
    EXPECT_EQ("got it", visitAsSomebodyElse(name).output);
    EXPECT_TRUE(isFree(name));
    EXPECT_TRUE(files().empty());
    EXPECT_EQ("", messages());
}

TEST_F(LinuxRefusals, AnotherUsersOwnSemaphoreIsItsOwn)
{
    const std::string name = freshName();
    const ChildResult visitor = visitAsSomebodyElse(name);
    EXPECT_EQ("got it", visitor.output);
    EXPECT_EQ("", visitor.errors);
    EXPECT_TRUE(files().empty());
}

// The messages are looked at when there are descriptors again: a sanitizer opens some to look at an object of this
// scene.
TEST_F(LinuxRefusals, NoDescriptors)
{
    const std::string name = freshName();
    zvSemaphoreIPC semaphore(name, 1, false);
    {
        const DescriptorLimit none(0);
        EXPECT_FALSE(semaphore.Open());
    }
    EXPECT_EQ(openFailed(name, EMFILE), messages());
    EXPECT_TRUE(files().empty());
}

TEST_F(LinuxRefusals, NoDescriptorForASecondSemaphore)
{
    const std::string name = freshName();
    std::unique_ptr<zvSemaphoreIPC> first(new zvSemaphoreIPC(name, 1, false));
    zvSemaphoreIPC second(name, 1, false);
    {
        const DescriptorLimit one(1);
        EXPECT_TRUE(first->Open());
        EXPECT_TRUE(first->TryAcquire());
        EXPECT_FALSE(second.Open());
        first.reset();
    }
    EXPECT_EQ(openFailed(name, EMFILE), messages());
    EXPECT_TRUE(isFree(name));
    EXPECT_TRUE(files().empty());
    EXPECT_EQ("", messages());
}

}  // namespace
