#include <zorvel/dirlock.h>
#include <zorvel/errors.h>

#include "tests/support/child.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>

// A directory in which the caller may not write, and one that it may not list:
// there a writer would see no reader. A reader looks for one name only and
// needs no listing.

namespace {

using namespace zorvel::test;

const char* outcomeOf(const std::function<bool()>& acquire)
{
    try {
        return acquire() ? "acquired" : "not acquired";
    } catch (const zvPermissionDenied&) {
        return "denied";
    } catch (const zvFileAccessError&) {
        return "no access";
    } catch (const zvFileBasedLockError&) {
        return "another error";
    }
}

int acquireBoth(const std::vector<std::string>& arguments)
{
    const zvDirectoryReadWriteLock both(arguments.at(0), zvGetDefaultFSImp());
    zvDirectoryReadWriteLock::ReadLock reader = both.getReadLock();
    zvDirectoryReadWriteLock::WriteLock writer = both.getWriteLock();
    for (int i = 0; i < 2; ++i) {
        std::cout << outcomeOf([&] { return reader.tryAcquire(false); }) << std::endl;
        std::cout << outcomeOf([&] { return writer.tryAcquire(false); }) << std::endl;
    }
    std::cout << reader.isAcquired() << writer.isAcquired() << reader.release() << writer.release() << std::endl;
    return 0;
}
const ChildMode acquireBothMode("acquire-both", &acquireBoth);

std::string runUnprivileged(const TemporaryTree& tree)
{
    ProcessOptions options;
    options.unprivileged = true;
    // The locales of the build folder may be out of such a user's reach.
    options.unset = {"ZORVEL_CODE_PAGE", "LC_ALL", "LOCPATH"};
    return runChild("acquire-both", {tree.path("sub")}, options).output;
}

void allow(const TemporaryTree& tree, std::filesystem::perms permissions)
{
    std::string path = tree.path("sub");
    std::replace(path.begin(), path.end(), '\\', '/');
    std::filesystem::permissions(path, permissions);
}

TEST(UnlistableDirectory, IsThrownByAWriterAndNothingStays)
{
    TemporaryTree tree;
    tree.directory("sub");
    allow(tree, static_cast<std::filesystem::perms>(0333));
    EXPECT_EQ("acquired\nno access\nnot acquired\nno access\n1010\n", runUnprivileged(tree));
    EXPECT_TRUE(tree.names("sub").empty());
}

TEST(UnlistableDirectory, AReaderSeesTheWriterThere)
{
    TemporaryTree tree;
    tree.directory("sub");
    tree.file("sub\\.deploy_write_lock");
    allow(tree, static_cast<std::filesystem::perms>(0333));
    EXPECT_EQ("not acquired\nno access\nnot acquired\nno access\n0000\n", runUnprivileged(tree));
    EXPECT_EQ(std::vector<std::string>{".deploy_write_lock"}, tree.names("sub"));
}

TEST(UnlistableDirectory, WithoutWritePermissionItIsThrownByTheGuard)
{
    TemporaryTree tree;
    tree.directory("sub");
    allow(tree, static_cast<std::filesystem::perms>(0555));
    EXPECT_EQ("denied\ndenied\ndenied\ndenied\n0000\n", runUnprivileged(tree));
    EXPECT_TRUE(tree.names("sub").empty());
}

TEST(UnlistableDirectory, WithAllPermissionsItIsAcquired)
{
    TemporaryTree tree;
    tree.directory("sub");
    allow(tree, static_cast<std::filesystem::perms>(0777));
    EXPECT_EQ("acquired\nnot acquired\nnot acquired\nnot acquired\n1010\n", runUnprivileged(tree));
    EXPECT_TRUE(tree.names("sub").empty());
}

}  // namespace
