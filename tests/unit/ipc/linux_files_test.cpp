/// The file behind a semaphore: when it is there, and what else may be there
/// under its name.

#include "tests/support/child.h"
#include "tests/unit/ipc/linux_scene.h"

#include <cerrno>
#include <iostream>

using namespace zorvel::test;

namespace {

namespace fs = std::filesystem;

/// Holds a semaphore until it is killed.
int hold(const std::vector<std::string>& arguments)
{
    zvSemaphoreIPC semaphore(arguments.at(0), 1, false);
    if (!semaphore.Open() || !semaphore.TryAcquire())
        return 1;
    std::cout << "held" << std::endl;
    std::string line;
    std::getline(std::cin, line);
    return 0;
}
const ChildMode holdMode("hold", &hold);

class LinuxFiles : public LinuxScene
{
};

TEST_F(LinuxFiles, AreThereWhileTheSemaphoreIsOpen)
{
    const std::string name = freshName();
    zvSemaphoreIPC unopened(name, 1, false);
    EXPECT_TRUE(files().empty());
    auto one = opened(name);
    ASSERT_EQ(1u, files().size());
    const std::string file = files()[0];
    EXPECT_EQ("zorvel-semaphore-", file.substr(0, 17));
    EXPECT_EQ(64u, fs::file_size(directory() + ('/' + file)));
    auto two = opened(name);
    EXPECT_EQ(std::vector<std::string>{file}, files());
    one.reset();
    EXPECT_EQ(std::vector<std::string>{file}, files());
    two.reset();
    EXPECT_TRUE(files().empty());
    const auto again = opened(name);
    EXPECT_EQ(std::vector<std::string>{file}, files());
}

TEST_F(LinuxFiles, EveryNameHasItsOwn)
{
    std::vector<std::unique_ptr<zvSemaphoreIPC>> all;
    for (int byte = 1; byte < 256; ++byte) {
        all.push_back(opened(std::string(1, static_cast<char>(byte))));
        EXPECT_TRUE(all.back()->TryAcquire()) << byte;
        EXPECT_EQ(static_cast<std::size_t>(byte), files().size());
    }
    all.push_back(opened(std::string(32767, 'x')));
    all.push_back(opened(std::string(32766, 'x') + 'y'));
    EXPECT_TRUE(all[255]->TryAcquire());
    EXPECT_TRUE(all[256]->TryAcquire());
    all.clear();
    EXPECT_TRUE(files().empty());
}

TEST_F(LinuxFiles, AreReadableAndWritableAsTheMaskSays)
{
    const struct
    {
        unsigned mask;
        unsigned mode;
    } cases[] = {{0, 0666}, {022, 0644}, {027, 0640}, {077, 0600}, {0777, 0}};
    for (const auto& each : cases) {
        const FileMask mask(each.mask);
        const auto semaphore = opened(freshName());
        ASSERT_EQ(1u, files().size());
        const fs::perms found = fs::status(directory() + ('/' + files()[0])).permissions();
        EXPECT_EQ(each.mode, static_cast<unsigned>(found)) << std::oct << each.mask;
    }
}

TEST_F(LinuxFiles, NothingStaysOpenBehindASemaphore)
{
    const std::size_t descriptors = openDescriptors();
    EXPECT_EQ(0u, mappingsBelow(directory()));
    const std::string name = freshName();
    {
        const auto one = opened(name);
        const auto two = opened(name);
        EXPECT_LE(1u, mappingsBelow(directory()));
        EXPECT_TRUE(one->TryAcquire());
    }
    EXPECT_EQ(descriptors, openDescriptors());
    EXPECT_EQ(0u, mappingsBelow(directory()));
}

TEST_F(LinuxFiles, OfAKilledHolderHoldNoToken)
{
    const std::string name = freshName();
    for (int i = 0; i < 3; ++i) {
        Process holder(childCommand("hold", {name}));
        std::string line;
        ASSERT_TRUE(holder.readLine(line));
        EXPECT_FALSE(isFree(name));
        holder.kill();
        EXPECT_EQ(128 + 9, holder.finish());
        EXPECT_EQ(1u, files().size());
    }
    const auto next = opened(name);
    EXPECT_EQ(1u, files().size()) << "it is taken over";
    EXPECT_TRUE(next->TryAcquire());
    EXPECT_FALSE(isFree(name));
}

TEST_F(LinuxFiles, AreNotKeptByProgramsThatTheProcessStarts)
{
    const std::string name = freshName();
    auto mine = opened(name);
    EXPECT_TRUE(mine->TryAcquire());
    const std::string others = freshName();
    Process other(childCommand("hold", {others}));
    std::string line;
    ASSERT_TRUE(other.readLine(line));
    EXPECT_EQ(2u, files().size());
    mine.reset();
    EXPECT_EQ(1u, files().size());
    EXPECT_TRUE(isFree(name));
}

/// Whoever is killed while making one leaves it so.
TEST_F(LinuxFiles, ThatAreEmptyOrUnmadeAreTakenOver)
{
    const std::string name = freshName();
    const std::string path = fileOf(name);
    const std::string halfWritten = "zorvel s" + std::string(56, '\0');
    for (const std::string& content : {std::string(), std::string(64, '\0'), halfWritten}) {
        write(path, content);
        {
            const auto semaphore = opened(name);
            EXPECT_TRUE(semaphore->TryAcquire());
            EXPECT_FALSE(isFree(name));
            EXPECT_EQ(1u, files().size());
        }
        EXPECT_TRUE(files().empty());
    }
    EXPECT_EQ("", messages());
}

TEST_F(LinuxFiles, OfSomebodyElseAreNotTouched)
{
    const std::string name = freshName();
    const std::string path = fileOf(name);
    for (const std::string& content : {std::string("x"), std::string("somebody's notes\n"), std::string(64, 'x'),
                                       std::string(63, '\0'), std::string(65, '\0'), std::string(4096, '\0')}) {
        write(path, content);
        expectRefused(name, EEXIST);
        EXPECT_EQ(content, read(path));
    }
    fs::remove(path);
    EXPECT_TRUE(isFree(name));
}

TEST_F(LinuxFiles, ADirectoryInItsPlaceIsRefused)
{
    const std::string name = freshName();
    const std::string path = fileOf(name);
    fs::create_directory(path);
    expectRefused(name, EISDIR);
    EXPECT_TRUE(fs::is_directory(path));
}

TEST_F(LinuxFiles, APipeInItsPlaceIsRefused)
{
    const std::string name = freshName();
    const std::string path = fileOf(name);
    makeNamedPipe(path);
    expectRefused(name, EEXIST);
    EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(LinuxFiles, ALinkInItsPlaceIsNotFollowed)
{
    const std::string name = freshName();
    const std::string path = fileOf(name);
    const std::string target = directory() + std::string("/target");
    fs::create_symlink(target, path);
    expectRefused(name, ELOOP);
    EXPECT_FALSE(fs::exists(target)) << "a link to nothing creates nothing";
    for (const std::string& content : {std::string(), std::string("somebody's"), std::string(64, '\0')}) {
        write(target, content);
        expectRefused(name, ELOOP);
        EXPECT_EQ(content, read(target));
    }
    EXPECT_TRUE(fs::is_symlink(path));
}

/// Somebody who cleans /dev/shm up does not take the semaphore away from those
/// who have it, and they do not take a new one away from others.
TEST_F(LinuxFiles, RemovedUnderTheirUsers)
{
    const std::string name = freshName();
    auto old = opened(name);
    const auto old2 = opened(name);
    EXPECT_TRUE(old->TryAcquire());
    fs::remove(directory() + ('/' + files().at(0)));
    EXPECT_FALSE(old2->TryAcquire());
    EXPECT_TRUE(old->Release());
    EXPECT_TRUE(old2->TryAcquire());
    const auto fresh = opened(name);
    EXPECT_TRUE(fresh->TryAcquire());
    old.reset();
    EXPECT_EQ(1u, files().size());
    EXPECT_FALSE(isFree(name));
    EXPECT_EQ("", messages());
}

}  // namespace
