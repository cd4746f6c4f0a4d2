#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

using namespace zorvel::test;

namespace {

const unsigned short ownerWrite = 0x80;

}  // namespace

TEST(Permissions, DisableAndRestore)
{
    TemporaryTree tree;
    tree.file("file");
    const std::string path = tree.path("file");
    const unsigned short before = zvDisableWritePermission(path.c_str());
    EXPECT_EQ(before & ownerWrite, ownerWrite);
    EXPECT_TRUE(tree.isReadOnly("file"));
    EXPECT_EQ(zvGetFilePermissions(path.c_str()) & ownerWrite, 0);
    EXPECT_EQ(zvSetFilePermissions(path.c_str(), before), 0);
    EXPECT_FALSE(tree.isReadOnly("file"));
    EXPECT_EQ(zvGetFilePermissions(path.c_str()), before);
}

TEST(Permissions, EnableReturnsTheModeFromBefore)
{
    TemporaryTree tree;
    tree.file("file");
    tree.makeReadOnly("file");
    const std::string path = tree.path("file");
    const unsigned short before = zvEnableWritePermission(path.c_str());
    EXPECT_EQ(before & ownerWrite, 0);
    EXPECT_FALSE(tree.isReadOnly("file"));
    EXPECT_EQ(zvEnableWritePermission(path.c_str()), zvGetFilePermissions(path.c_str()));
    EXPECT_EQ(zvSetFilePermissions(path.c_str(), before), 0);
    EXPECT_TRUE(tree.isReadOnly("file"));
}

TEST(Permissions, TheModeWordTellsFilesFromDirectories)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("file");
    EXPECT_EQ(zvGetFilePermissions(tree.path("dir").c_str()) & 0xF000, 0x4000);
    EXPECT_EQ(zvGetFilePermissions(tree.path("file").c_str()) & 0xF000, 0x8000);
}

TEST(Permissions, FailOnMissingPaths)
{
    TemporaryTree tree;
    const std::string path = tree.path("missing");
    EXPECT_EQ(zvSetFilePermissions(path.c_str(), 0x180), -1);
    EXPECT_EQ(zvEnableWritePermission(path.c_str()), 0);
    EXPECT_EQ(zvDisableWritePermission(path.c_str()), 0);
    EXPECT_FALSE(tree.exists("missing"));
}
