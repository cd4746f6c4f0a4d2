#include "tests/support/child.h"
#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

using namespace zorvel::test;
namespace fs = std::filesystem;

namespace {

typedef std::vector<std::string> Arguments;

fs::path standard(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

unsigned modeOf(const fs::path& path)
{
    return static_cast<unsigned>(fs::status(path).permissions());
}

void setMode(const fs::path& path, unsigned mode)
{
    fs::permissions(path, static_cast<fs::perms>(mode));
}

/// Everything below happens in a child that has no special rights, because a
/// privileged user is refused nothing.
int runUnprivileged(const char* mode, const TemporaryTree& tree, std::string& errors)
{
    ProcessOptions options;
    options.unprivileged = true;
    // The locales of the build folder may be out of such a user's reach; permissions do not depend on them.
    options.unset = {"ZORVEL_CODE_PAGE", "LC_ALL", "LOCPATH"};
    const ChildResult result = runChild(mode, {tree.root()}, options);
    errors = result.errors;
    return result.status;
}

/// Says what does not hold and makes the child fail.
class Claims
{
public:
    Claims() : m_failures(0) {}

    void hold(bool claim, const char* text)
    {
        if (!claim && ++m_failures)
            std::fprintf(stderr, "%s\n", text);
    }

    int status() const { return m_failures; }

private:
    int m_failures;
};

int removeWithoutPermission(const Arguments& arguments)
{
    const std::string root = arguments.at(0);
    const fs::path mine = standard(root) / "mine";
    Claims claims;
    fs::create_directories(mine / "inner" / "closed");
    std::ofstream(mine / "inner" / "closed" / "kept");
    std::ofstream(mine / "inner" / "gone");
    std::ofstream(mine / "gone");
    setMode(mine / "inner" / "closed", 0);
    setMode(mine / "inner", 0555);
    claims.hold(!zvRemoveRF((root + "\\mine").c_str()), "a closed directory stays, so the answer is false");
    claims.hold(!fs::exists(mine / "gone"), "the rest is removed");
    claims.hold(!fs::exists(mine / "inner" / "gone"), "also in a directory that had no write permission");
    claims.hold(modeOf(mine / "inner") == 0555, "which has its mode back");
    claims.hold(modeOf(mine / "inner" / "closed") == 0, "the closed directory has its mode");
    setMode(mine / "inner" / "closed", 0700);
    claims.hold(fs::exists(mine / "inner" / "closed" / "kept"), "what it holds stays");
    claims.hold(zvRemoveRF((root + "\\mine").c_str()), "once it is open everything goes");
    return claims.status();
}

int removeReadOnlyTree(const Arguments& arguments)
{
    const std::string root = arguments.at(0);
    const fs::path mine = standard(root) / "mine";
    Claims claims;
    fs::create_directories(mine / "a" / "b");
    std::ofstream(mine / "a" / "b" / "file");
    setMode(mine / "a" / "b" / "file", 0400);
    for (const char* name : {"a/b", "a", ""})
        setMode(mine / name, 0500);
    claims.hold(zvRemoveRF((root + "\\mine").c_str()), "a read-only tree of one's own goes");
    claims.hold(!fs::exists(mine), "and is gone");
    fs::create_directory(mine);
    setMode(mine, 0);
    claims.hold(zvRemoveRF((root + "\\mine").c_str()), "an empty directory goes though it cannot be opened");
    return claims.status();
}

int workBelowASearchOnlyDirectory(const Arguments& arguments)
{
    const std::string root = arguments.at(0);
    const fs::path mine = standard(root) / "mine";
    Claims claims;
    fs::create_directory(mine);
    std::ofstream(mine / "file");
    std::ofstream(mine / "other");
    setMode(mine, 0300);
    claims.hold(zvFileExists((root + "\\mine\\file").c_str()), "a name can be reached without a listing");
    claims.hold(zvMatchingFileOrDirExists((root + "\\mine\\file").c_str()), "the walk finds a single name");
    claims.hold(!zvMatchingFileOrDirExists((root + "\\mine\\*").c_str()), "but cannot list");
    claims.hold(zvRemoveRF((root + "\\mine\\*").c_str()), "nothing can be listed, so nothing matched");
    claims.hold(zvRemoveRF((root + "\\mine\\file").c_str()), "a single name is removed");
    claims.hold(!zvFileOrDirExists((root + "\\mine\\file").c_str()), "and gone");
    claims.hold(zvFileExists((root + "\\mine\\other").c_str()), "its neighbour is not");
    setMode(mine, 0500);
    claims.hold(!zvRemoveRF((root + "\\mine\\other").c_str()), "the directory part gets no permission by force");
    claims.hold(!zvMkdirP((root + "\\mine\\new\\deeper").c_str()), "nothing is created in a read-only directory");
    setMode(mine, 0);
    claims.hold(!zvFileOrDirExists((root + "\\mine\\other").c_str()), "what cannot be examined is not there");
    claims.hold(zvGetDirectorySize((root + "\\mine").c_str()) == 0, "a closed directory has no size");
    setMode(mine, 0700);
    return claims.status();
}

const ChildMode withoutPermission("remove-without-permission", &removeWithoutPermission);
const ChildMode readOnlyTree("remove-read-only-tree", &removeReadOnlyTree);
const ChildMode searchOnly("search-only-directory", &workBelowASearchOnlyDirectory);

}  // namespace

TEST(LinuxPermissions, WhatIsRefusedStaysAndHasItsModeBack)
{
    TemporaryTree tree;
    std::string errors;
    EXPECT_EQ(runUnprivileged("remove-without-permission", tree, errors), 0) << errors;
}

TEST(LinuxPermissions, ReadOnlyTreesGo)
{
    TemporaryTree tree;
    std::string errors;
    EXPECT_EQ(runUnprivileged("remove-read-only-tree", tree, errors), 0) << errors;
}

TEST(LinuxPermissions, SearchPermissionIsEnoughForASingleName)
{
    TemporaryTree tree;
    std::string errors;
    EXPECT_EQ(runUnprivileged("search-only-directory", tree, errors), 0) << errors;
}
