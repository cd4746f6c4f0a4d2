#include "platform/files.h"

#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <ctime>

using namespace zorvel::test;
using namespace zorvel::platform;

TEST(Files, TellKinds)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("file");
    tree.link("dir", "to-dir");
    tree.link("file", "to-file");
    EXPECT_EQ(entryKind(tree.path("dir").c_str()), EntryKind::directory);
    EXPECT_EQ(entryKind(tree.path("file").c_str()), EntryKind::file);
    EXPECT_EQ(entryKind(tree.path("to-dir").c_str()), EntryKind::directoryLink);
    EXPECT_EQ(entryKind(tree.path("to-file").c_str()), EntryKind::file);
    EXPECT_EQ(entryKind(tree.path("missing").c_str()), EntryKind::none);
    EXPECT_EQ(entryKind(nullptr), EntryKind::none);
    EXPECT_EQ(entryKind(""), EntryKind::none);
}

TEST(Files, TellTheStatus)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("file", "1234567");
    FileStatus status;
    ASSERT_EQ(fileStatus(tree.path("file").c_str(), status), 0);
    EXPECT_EQ(status.size, 7);
    EXPECT_NEAR(static_cast<double>(status.modificationTime), static_cast<double>(std::time(nullptr)), 600);
    tree.age("file", -5000);
    const std::int64_t before = status.modificationTime;
    ASSERT_EQ(fileStatus(tree.path("file").c_str(), status), 0);
    EXPECT_EQ(status.modificationTime, before - 5000);
    ASSERT_EQ(fileStatus(tree.path("dir").c_str(), status), 0);
    EXPECT_EQ(status.size, 0);
    EXPECT_EQ(fileStatus(tree.path("missing").c_str(), status), ENOENT);
    EXPECT_EQ(fileStatus(nullptr, status), ENOENT);
    EXPECT_EQ(fileStatus("", status), ENOENT);
}

void expectTimesOf(int (*timeOf)(const char*, std::int64_t&))
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("file");
    const std::int64_t written = tree.modificationTime("file");
    std::int64_t seconds = 0;
    ASSERT_EQ(timeOf(tree.path("file").c_str(), seconds), 0);
    EXPECT_EQ(seconds, written);
    tree.age("file", -5000);
    ASSERT_EQ(timeOf(tree.path("file").c_str(), seconds), 0);
    EXPECT_EQ(seconds, written - 5000);
    EXPECT_EQ(timeOf(tree.path("dir").c_str(), seconds), 0);
    EXPECT_EQ(timeOf(tree.path("missing").c_str(), seconds), ENOENT);
    EXPECT_EQ(timeOf(nullptr, seconds), ENOENT);
    EXPECT_EQ(timeOf("", seconds), ENOENT);
}

TEST(Files, TellTheirModificationTime)
{
    expectTimesOf(&modificationTime);
}

TEST(Files, TellTheModificationTimeThatTheServerHas)
{
    expectTimesOf(&modificationTimeAtServer);
}

TEST(Files, FlushWhatIsOpen)
{
    TemporaryTree tree;
    WritableFile file;
    EXPECT_EQ(file.flush(), EBADF);
    ASSERT_EQ(file.open(tree.path("file").c_str(), OpenMode::createNew), 0);
    ASSERT_EQ(file.write("1234", 4), 0);
    EXPECT_EQ(file.flush(), 0);
    file.close();
    EXPECT_EQ(file.flush(), EBADF);
    EXPECT_EQ(tree.content("file"), "1234");
}

TEST(Files, CreateExclusively)
{
    TemporaryTree tree;
    const std::string path = tree.path("file");
    WritableFile first;
    WritableFile second;
    EXPECT_EQ(first.open(path.c_str(), OpenMode::createNew), 0);
    EXPECT_EQ(second.open(path.c_str(), OpenMode::createNew), EEXIST);
    EXPECT_EQ(second.open(path.c_str(), OpenMode::createOrOpen), 0);
    EXPECT_EQ(second.open(tree.path("missing\\file").c_str(), OpenMode::createNew), ENOENT);
    EXPECT_EQ(second.open(nullptr, OpenMode::createNew), ENOENT);
    EXPECT_EQ(second.open(tree.root().c_str(), OpenMode::createOrOpen), EACCES);
}

TEST(Files, WriteEveryByteAsItIs)
{
    TemporaryTree tree;
    WritableFile file;
    ASSERT_EQ(file.open(tree.path("file").c_str(), OpenMode::createNew), 0);
    const std::string data("\x0A\x0D\x1A\x0A", 4);
    EXPECT_EQ(file.write(data.data(), data.size()), 0);
    file.close();
    EXPECT_EQ(tree.content("file"), data);
}

TEST(Files, WriteAtTheStartAndDoNotTruncate)
{
    TemporaryTree tree;
    tree.file("file", "abcdefgh");
    WritableFile file;
    ASSERT_EQ(file.open(tree.path("file").c_str(), OpenMode::createOrOpen), 0);
    EXPECT_EQ(file.write("12", 2), 0);
    EXPECT_EQ(file.write("345", 3), 0);
    file.close();
    EXPECT_EQ(tree.content("file"), "345defgh");
    EXPECT_EQ(file.write("x", 1), EBADF);
}

TEST(Files, RemoveFilesOnly)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("file");
    EXPECT_EQ(removeFile(tree.path("file").c_str()), 0);
    EXPECT_FALSE(tree.exists("file"));
    EXPECT_EQ(removeFile(tree.path("file").c_str()), ENOENT);
    EXPECT_EQ(removeFile(tree.path("dir").c_str()), EACCES);
    EXPECT_TRUE(tree.exists("dir"));
    EXPECT_EQ(removeFile(nullptr), ENOENT);
}

TEST(Files, MakeDirectories)
{
    TemporaryTree tree;
    tree.file("file");
    EXPECT_EQ(makeDirectory(tree.path("dir").c_str()), 0);
    EXPECT_EQ(makeDirectory(tree.path("dir").c_str()), EEXIST);
    EXPECT_EQ(makeDirectory(tree.path("file").c_str()), EEXIST);
    EXPECT_EQ(makeDirectory(tree.path("missing\\dir").c_str()), ENOENT);
    EXPECT_EQ(makeDirectory(nullptr), ENOENT);
}
