#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace zorvel::test;

TEST(Queries, TellDirectoriesFromFiles)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("file", "12345");
    EXPECT_TRUE(zvIsDirectory(tree.path("dir").c_str()));
    EXPECT_TRUE(zvFileOrDirExists(tree.path("dir").c_str()));
    EXPECT_FALSE(zvFileExists(tree.path("dir").c_str()));
    EXPECT_FALSE(zvIsDirectory(tree.path("file").c_str()));
    EXPECT_TRUE(zvFileOrDirExists(tree.path("file").c_str()));
    EXPECT_TRUE(zvFileExists(tree.path("file").c_str()));
}

TEST(Queries, AcceptBothSeparators)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("dir\\file");
    EXPECT_TRUE(zvFileExists(tree.path("dir/file").c_str()));
    EXPECT_TRUE(zvFileExists(tree.path("dir\\file").c_str()));
    EXPECT_TRUE(zvIsDirectory(tree.path("dir\\").c_str()));
}

TEST(Queries, KnowTheRoot)
{
    EXPECT_TRUE(zvIsDirectory(hasDrives() ? "C:\\" : "\\"));
    EXPECT_FALSE(zvFileExists(hasDrives() ? "C:\\" : "\\"));
    EXPECT_TRUE(zvIsDirectory("."));
}

TEST(Queries, SeeNothingAtMissingPaths)
{
    TemporaryTree tree;
    tree.file("file");
    for (const char* name : {"missing", "missing\\deeper", "file\\below"}) {
        const std::string path = tree.path(name);
        EXPECT_FALSE(zvIsDirectory(path.c_str())) << name;
        EXPECT_FALSE(zvFileOrDirExists(path.c_str())) << name;
        EXPECT_FALSE(zvFileExists(path.c_str())) << name;
        EXPECT_EQ(zvGetFileSize(path.c_str()), 0) << name;
        EXPECT_EQ(zvGetFilePermissions(path.c_str()), 0) << name;
    }
}

TEST(Queries, GiveTheFailureResultForNullEmptyAndOverlongPaths)
{
    const std::string overlong(100000, 'x');
    for (const char* path : {static_cast<const char*>(nullptr), "", overlong.c_str()}) {
        zvUInt64 available = 1;
        EXPECT_FALSE(zvIsDirectory(path));
        EXPECT_FALSE(zvFileOrDirExists(path));
        EXPECT_FALSE(zvFileExists(path));
        EXPECT_EQ(zvGetFileSize(path), 0);
        EXPECT_EQ(zvGetFilePermissions(path), 0);
        EXPECT_EQ(zvSetFilePermissions(path, 0x80), -1);
        EXPECT_EQ(zvEnableWritePermission(path), 0);
        EXPECT_EQ(zvDisableWritePermission(path), 0);
        EXPECT_FALSE(zvGetFileSystemAvailableSpace(path, &available));
        EXPECT_EQ(available, ~zvUInt64(0));
    }
}

TEST(Queries, TellSizes)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("empty");
    tree.file("dir\\file", "12345");
    EXPECT_EQ(zvGetFileSize(tree.path("empty").c_str()), 0);
    EXPECT_EQ(zvGetFileSize(tree.path("dir\\file").c_str()), 5);
    EXPECT_EQ(zvGetFileSize(tree.path("dir").c_str()), 0);
}

/// Makes a file of size bytes of which only the last is written.
static void makeSparseFile(const std::filesystem::path& path, long long size)
{
    std::ofstream file(path, std::ios::binary);
    file.seekp(size - 1);
    file.put('x');
    ASSERT_TRUE(file.flush().good());
}

TEST(Queries, ReadSizesThroughThirtyTwoSignedBits)
{
    TemporaryTree tree;
    const long long gib = 1LL << 30;
    makeSparseFile(standardPath(tree, "two"), 2 * gib);
    makeSparseFile(standardPath(tree, "three"), 3 * gib);
    makeSparseFile(standardPath(tree, "five"), 5 * gib);
    EXPECT_EQ(zvGetFileSize(tree.path("two").c_str()), -2 * gib);
    EXPECT_EQ(zvGetFileSize(tree.path("three").c_str()), -gib);
    EXPECT_EQ(zvGetFileSize(tree.path("five").c_str()), gib);
}

TEST(Queries, TellTheAvailableSpace)
{
    TemporaryTree tree;
    zvUInt64 available = ~zvUInt64(0);
    EXPECT_TRUE(zvGetFileSystemAvailableSpace(tree.root().c_str(), &available));
    EXPECT_GT(available, 0u);
    EXPECT_LT(available, ~zvUInt64(0));
}

TEST(Queries, LeaveAllBitsSetWhenTheSpaceIsUnknown)
{
    TemporaryTree tree;
    zvUInt64 available = 7;
    EXPECT_FALSE(zvGetFileSystemAvailableSpace(tree.path("missing").c_str(), &available));
    EXPECT_EQ(available, ~zvUInt64(0));
    EXPECT_FALSE(zvGetFileSystemAvailableSpace(tree.root().c_str(), nullptr));
}

TEST(Queries, SeeLinksToFilesAndDirectories)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("file", "123");
    tree.link("dir", "to-dir");
    tree.link("file", "to-file");
    EXPECT_TRUE(zvIsDirectory(tree.path("to-dir").c_str()));
    EXPECT_FALSE(zvFileExists(tree.path("to-dir").c_str()));
    EXPECT_TRUE(zvFileExists(tree.path("to-file").c_str()));
    EXPECT_EQ(zvGetFileSize(tree.path("to-file").c_str()), 3);
}

TEST(Queries, DirectoryTotalsAddThirtyTwoSignedBits)
{
    TemporaryTree tree;
    const long long gib = 1LL << 30;
    tree.directory("dir");
    tree.directory("dir\\sub");
    tree.file("dir\\small", "12345");
    makeSparseFile(standardPath(tree, "dir\\three"), 3 * gib);
    EXPECT_EQ(zvGetDirectorySize(tree.path("dir").c_str()), static_cast<zvUInt64>(5 - gib));
    makeSparseFile(standardPath(tree, "dir\\sub\\five"), 5 * gib);
    EXPECT_EQ(zvGetDirectorySize(tree.path("dir").c_str()), 5u);
}

TEST(Queries, TheAvailableSpaceIsTheCallersNotAllThatIsFree)
{
    TemporaryTree tree;
    zvUInt64 available = 0;
    ASSERT_TRUE(zvGetFileSystemAvailableSpace(tree.root().c_str(), &available));
    const auto expected = static_cast<double>(std::filesystem::space(standardPath(tree, "")).available);
    // Other processes use the same file system meanwhile.
    EXPECT_NEAR(static_cast<double>(available), expected, 512.0 * 1024 * 1024);
}

TEST(Queries, TheSpaceAtAFileIsTheSystemsChoice)
{
    TemporaryTree tree;
    tree.file("file");
    zvUInt64 available = 0;
    EXPECT_EQ(zvGetFileSystemAvailableSpace(tree.path("file").c_str(), &available), !hasDrives());
    EXPECT_EQ(available == ~zvUInt64(0), hasDrives());
}
