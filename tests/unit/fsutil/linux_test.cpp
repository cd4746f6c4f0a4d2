#include "platform/directory.h"
#include "tests/support/child.h"
#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <vector>

using namespace zorvel::test;
using zorvel::platform::RemovalDirectory;
namespace fs = std::filesystem;

namespace {

unsigned modeOf(const fs::path& path)
{
    return static_cast<unsigned>(fs::status(path).permissions());
}

void setMode(const fs::path& path, unsigned mode)
{
    fs::permissions(path, static_cast<fs::perms>(mode));
}

}  // namespace

TEST(Linux, CreationDoesNotLookASecondTime)
{
    TemporaryTree tree;
    tree.link("nowhere", "dangling");
    EXPECT_FALSE(zvMkdirP(tree.path("dangling").c_str()));
    EXPECT_FALSE(zvMkdirP(tree.path("dangling\\below").c_str()));
    EXPECT_FALSE(tree.exists("nowhere"));
}

TEST(Linux, OnlyTheOwnersWriteBitChanges)
{
    TemporaryTree tree;
    tree.file("file");
    const fs::path file = standardPath(tree, "file");
    const std::string path = tree.path("file");
    setMode(file, 0664);
    EXPECT_EQ(zvDisableWritePermission(path.c_str()), 0100664);
    EXPECT_EQ(modeOf(file), 0464u);
    EXPECT_EQ(zvGetFilePermissions(path.c_str()), 0100464);
    EXPECT_EQ(zvEnableWritePermission(path.c_str()), 0100464);
    EXPECT_EQ(modeOf(file), 0664u);
    setMode(file, 04511);
    EXPECT_EQ(zvEnableWritePermission(path.c_str()), 0104511);
    EXPECT_EQ(modeOf(file), 04711u);
    EXPECT_EQ(zvSetFilePermissions(path.c_str(), 0104511), 0);
    EXPECT_EQ(modeOf(file), 04511u);
}

/// Directories "d" in one another, with a file of another size in each of the
/// three about the limit.
TEST(Linux, SizesReach1024LevelsDeep)
{
    TemporaryTree tree;
    tree.directory("top");
    {
        const CurrentDirectory inside(tree.path("top"));
        for (int level = 1; level <= 1030; ++level) {
            fs::create_directory("d");
            fs::current_path("d");
            if (level >= 1023 && level <= 1025)
                std::ofstream("file") << std::string(level == 1023 ? 1 : level == 1024 ? 10 : 100, 'x');
        }
    }
    EXPECT_EQ(zvGetDirectorySize(tree.path("top").c_str()), 11u);
    const CurrentDirectory inside(tree.path("top"));
    EXPECT_EQ(zvGetDirectorySize("."), 1u);
}

TEST(Linux, AnOpenDirectoryThatGoesPutsItsModeBack)
{
    TemporaryTree tree;
    tree.directory("child");
    const fs::path child = standardPath(tree, "child");
    setMode(child, 0555);
    RemovalDirectory top;
    ASSERT_EQ(top.open(tree.root().c_str()), 0);
    {
        RemovalDirectory open;
        ASSERT_EQ(open.openChild(top, "child"), 0);
        open.allowRemovalsInside();
        open.allowRemovalsInside();
        EXPECT_EQ(modeOf(child), 0755u);
        open.restorePermission();
        EXPECT_EQ(modeOf(child), 0555u);
        open.allowRemovalsInside();
    }
    EXPECT_EQ(modeOf(child), 0555u);
}

namespace {

/// Holds every descriptor that the process may have. With the C library's
/// files: a sanitizer's check of a stream object needs a descriptor itself.
class UsedUp
{
public:
    UsedUp()
    {
        while (std::FILE* const file = std::fopen("/dev/null", "r"))
            m_files.push_back(file);
    }
    ~UsedUp()
    {
        while (!m_files.empty())
            giveBackOne();
    }

    UsedUp(const UsedUp&) = delete;
    UsedUp& operator=(const UsedUp&) = delete;

    void giveBackOne()
    {
        std::fclose(m_files.back());
        m_files.pop_back();
    }

private:
    std::vector<std::FILE*> m_files;
};

int fail(const char* text)
{
    std::fprintf(stderr, "%s\n", text);
    return 1;
}

int removeWithoutDescriptors(const std::vector<std::string>& arguments)
{
    const std::string root = arguments.at(0);
    {
        UsedUp usedUp;
        if (zvRemoveRF((root + "\\file").c_str()))
            return fail("a directory that cannot be opened is no proof that nothing matched");
        usedUp.giveBackOne();
        if (!zvRemoveRF((root + "\\f*").c_str()))
            return fail("one descriptor is enough for files that match");
        if (zvRemoveRF((root + "\\dir").c_str()))
            return fail("a directory that could not be emptied stays");
        if (!zvRemoveRF((root + "\\single").c_str()))
            return fail("one descriptor is enough for a file");
    }
    return zvRemoveRF((root + "\\*").c_str()) ? 0 : fail("with descriptors everything goes");
}

const ChildMode withoutDescriptors("remove-without-descriptors", &removeWithoutDescriptors);

}  // namespace

TEST(Linux, RemovalTellsThatItRanOutOfDescriptors)
{
    TemporaryTree tree;
    tree.directory("dir");
    for (const char* name : {"file", "single", "dir\\file"})
        tree.file(name);
    std::vector<std::string> command = {"/bin/sh", "-c", "ulimit -n 64 && exec \"$@\"", "sh"};
    for (const std::string& word : childCommand("remove-without-descriptors", {tree.root()}))
        command.push_back(word);
    Process child(command);
    std::string errors;
    EXPECT_EQ(child.finish(nullptr, &errors), 0) << errors;
    EXPECT_EQ(tree.names(), Names());
}
