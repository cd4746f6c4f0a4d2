#include <zorvel/errors.h>
#include <zorvel/fsutil.h>
#include <zorvel/lockfile.h>

#include "tests/support/child.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temporary_tree.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <mutex>
#include <set>
#include <thread>

// The default file system on real directories. The clock is the test's: a wait
// shows as a sleep that was asked for.

namespace {

using namespace zorvel::test;
using boost::posix_time::ptime;
using boost::posix_time::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

/// A bound on nothing: no operation here is expected to reach it.
ptime later()
{
    return fake_clock::now() + seconds(5);
}

template <class Error, class F>
std::string textThrown(F f)
{
    try {
        f();
    } catch (const Error& error) {
        return error.what();
    } catch (const std::exception& error) {
        return std::string("another exception: ") + error.what();
    }
    return "nothing thrown";
}

class NetworkFs : public testing::Test
{
protected:
    fake_clock::Scope m_clock;
    TemporaryTree m_tree;
    const boost::shared_ptr<zvAbstractFS> m_fs = zvGetDefaultFSImp();
};

TEST_F(NetworkFs, IsOneObject)
{
    EXPECT_EQ(m_fs.get(), zvGetDefaultFSImp().get());
    std::set<zvAbstractFS*> seen;
    std::mutex guard;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            zvAbstractFS* const fs = zvGetDefaultFSImp().get();
            const std::lock_guard<std::mutex> lock(guard);
            seen.insert(fs);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(1u, seen.size());
}

TEST_F(NetworkFs, IsDirectoryNormalisesThePath)
{
    m_tree.directory("sub");
    m_tree.file("file");
    EXPECT_TRUE(m_fs->isDirectory(m_tree.root().c_str()));
    EXPECT_TRUE(m_fs->isDirectory((m_tree.root() + "//sub").c_str()));
    EXPECT_TRUE(m_fs->isDirectory((" " + m_tree.path("sub") + " ").c_str()));
    EXPECT_FALSE(m_fs->isDirectory(m_tree.path("file").c_str()));
    EXPECT_FALSE(m_fs->isDirectory(m_tree.path("missing").c_str()));
    EXPECT_FALSE(m_fs->isDirectory(""));
    EXPECT_FALSE(m_fs->isDirectory(nullptr));
}

TEST_F(NetworkFs, MakesAndRemovesTrees)
{
    EXPECT_TRUE(m_fs->mkdirP(m_tree.path("a\\b\\c").c_str()));
    EXPECT_TRUE(m_tree.exists("a\\b\\c"));
    m_tree.file("a\\b\\file");
    EXPECT_TRUE(m_fs->removeRF(m_tree.path("a").c_str()));
    EXPECT_FALSE(m_tree.exists("a"));
    EXPECT_EQ(zvMkdirP(nullptr), m_fs->mkdirP(nullptr));
    EXPECT_EQ(zvMkdirP(""), m_fs->mkdirP(""));
    EXPECT_EQ(zvRemoveRF(nullptr), m_fs->removeRF(nullptr));
}

TEST_F(NetworkFs, RemovesOneEntry)
{
    m_tree.file("file");
    EXPECT_EQ(0, m_fs->removeEntry(m_tree.path("file").c_str()));
    EXPECT_FALSE(m_tree.exists("file"));
    EXPECT_EQ(-1, m_fs->removeEntry(m_tree.path("file").c_str()));
    EXPECT_EQ(-1, m_fs->removeEntry(""));
    EXPECT_EQ(-1, m_fs->removeEntry(nullptr));
}

TEST_F(NetworkFs, FileExists)
{
    m_tree.file("file");
    m_tree.directory("sub");
    EXPECT_TRUE(m_fs->fileExists(m_tree.path("file").c_str()));
    EXPECT_TRUE(m_fs->fileExists((m_tree.root() + "/file").c_str()));
    EXPECT_FALSE(m_fs->fileExists(m_tree.path("missing").c_str()));
    EXPECT_FALSE(m_fs->fileExists(m_tree.path("sub").c_str()));
    EXPECT_FALSE(m_fs->fileExists("a bare name that is missing"));
}

TEST_F(NetworkFs, FileExistsThrowsInAMissingDirectory)
{
    const std::string name = m_tree.root() + "\\missing/file";
    EXPECT_EQ("Tried to obtain a lock on a non-existent directory: " + name,
              textThrown<zvNoSuchDirectory>([&] { m_fs->fileExists(name.c_str()); }));
    m_tree.file("plain");
    const std::string below = m_tree.path("plain\\file");
    EXPECT_EQ("Tried to obtain a lock on a non-existent directory: " + below,
              textThrown<zvNoSuchDirectory>([&] { m_fs->fileExists(below.c_str()); }));
}

TEST_F(NetworkFs, CreatesAnEmptyFileOnce)
{
    const std::string name = m_tree.root() + "/file";
    EXPECT_TRUE(m_fs->createFileExclusive(name.c_str()));
    EXPECT_EQ("", m_tree.content("file"));
    EXPECT_FALSE(m_tree.isReadOnly("file"));
    EXPECT_FALSE(m_fs->createFileExclusive(name.c_str()));
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(NetworkFs, CreationLeavesAnExistingFileAlone)
{
    m_tree.file("file", "content");
    EXPECT_FALSE(m_fs->createFileExclusive(m_tree.path("file").c_str()));
    EXPECT_EQ("content", m_tree.content("file"));
}

TEST_F(NetworkFs, CreationThrowsInAMissingDirectory)
{
    const std::string name = m_tree.root() + "\\missing/file";
    EXPECT_EQ("Tried to obtain a lock on a non-existent directory: " + name,
              textThrown<zvNoSuchDirectory>([&] { m_fs->createFileExclusive(name.c_str()); }));
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(NetworkFs, CreationWithoutANameIsAFileSystemError)
{
    EXPECT_EQ(std::string("File system error occurred: Exclusive create failed on  (reason: ") + std::strerror(ENOENT) +
                  ")",
              textThrown<zvFileAccessError>([&] { m_fs->createFileExclusive(""); }));
    EXPECT_THROW(m_fs->createFileExclusive(nullptr), zvFileBasedLockError);
    EXPECT_THROW(m_fs->getModificationTime(nullptr), zvFileBasedLockError);
}

TEST_F(NetworkFs, RemovesAFileUntilADeadlineOfAnyKind)
{
    for (const ptime& deadline :
         {later(), fake_clock::now(), fake_clock::now() - seconds(9), ptime(boost::posix_time::pos_infin),
          ptime(boost::posix_time::neg_infin), ptime(boost::posix_time::not_a_date_time)}) {
        m_tree.file("file");
        EXPECT_TRUE(m_fs->removeFileUntil(m_tree.path("file"), deadline));
        EXPECT_FALSE(m_tree.exists("file"));
        EXPECT_FALSE(m_fs->removeFileUntil(m_tree.path("file"), deadline));
        EXPECT_FALSE(m_fs->removeFileUntil(m_tree.path("missing\\file"), deadline));
        EXPECT_FALSE(m_fs->removeFileUntil("", deadline));
    }
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(NetworkFs, NeverRemovesADirectory)
{
    m_tree.directory("sub");
    EXPECT_THROW(m_fs->removeFileUntil(m_tree.path("sub"), later()), zvPermissionDenied);
    EXPECT_TRUE(m_tree.exists("sub"));
}

TEST_F(NetworkFs, RefreshingCreatesAFileOfFourBytes)
{
    EXPECT_TRUE(m_fs->refreshLockFileUntil(m_tree.root() + "/file", later()));
    EXPECT_EQ(4u, m_tree.content("file").size());
    EXPECT_FALSE(m_tree.isReadOnly("file"));
}

TEST_F(NetworkFs, RefreshingOverwritesTheBeginningOnly)
{
    m_tree.file("file", "abcdefgh");
    m_tree.age("file", -100);
    const long long before = m_tree.modificationTime("file");
    EXPECT_TRUE(m_fs->refreshLockFileUntil(m_tree.path("file"), later()));
    const std::string content = m_tree.content("file");
    ASSERT_EQ(8u, content.size());
    EXPECT_NE("abcd", content.substr(0, 4));
    EXPECT_EQ("efgh", content.substr(4));
    EXPECT_GE(m_tree.modificationTime("file"), before + 99);
}

TEST_F(NetworkFs, ARefreshNeverRepeatsTheContent)
{
    std::string last;
    for (int i = 0; i < 300; ++i) {
        ASSERT_TRUE(m_fs->refreshLockFileUntil(m_tree.path("file"), later()));
        ASSERT_NE(last, m_tree.content("file"));
        last = m_tree.content("file");
    }
}

TEST_F(NetworkFs, RefreshingThrowsInAMissingDirectory)
{
    const std::string name = m_tree.root() + "\\missing/file";
    EXPECT_EQ("Tried to obtain a lock on a non-existent directory: " + name,
              textThrown<zvNoSuchDirectory>([&] { m_fs->refreshLockFileUntil(name, later()); }));
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(NetworkFs, RefreshingADirectoryIsDenied)
{
    m_tree.directory("sub");
    EXPECT_EQ("Tried to obtain a lock on a directory without write permission: " + m_tree.path("sub"),
              textThrown<zvPermissionDenied>([&] { m_fs->refreshLockFileUntil(m_tree.path("sub"), later()); }));
    EXPECT_EQ(std::vector<long>(50, 10), fake_clock::sleeps());
}

/// Refreshes a file in a process of its own, in which nothing was refreshed
/// before.
int refreshTimes(const std::vector<std::string>& arguments)
{
    for (int left = std::stoi(arguments.at(1)); left > 0; --left)
        zvGetDefaultFSImp()->refreshLockFile(arguments.at(0));
    return 0;
}
const ChildMode refreshMode("refresh", &refreshTimes);

TEST_F(NetworkFs, TheContentIsTheNumberOfRefreshesInTheProcess)
{
    EXPECT_EQ(0, runChild("refresh", {m_tree.path("one"), "1"}).status);
    EXPECT_EQ(std::string("\x01\x00\x00\x00", 4), m_tree.content("one"));
    EXPECT_EQ(0, runChild("refresh", {m_tree.path("many"), "300"}).status);
    EXPECT_EQ(std::string("\x2c\x01\x00\x00", 4), m_tree.content("many"));
}

TEST_F(NetworkFs, ModificationTimeIsTheServersInSeconds)
{
    m_tree.file("file");
    EXPECT_EQ(m_tree.modificationTime("file"), m_fs->getModificationTime(m_tree.path("file").c_str()));
    m_tree.age("file", -12345);
    EXPECT_EQ(m_tree.modificationTime("file"), m_fs->getModificationTime((m_tree.root() + "/file").c_str()));
}

/// The system would cut the name at the NUL and take it for the file before.
TEST_F(NetworkFs, ANameWithANulInItIsNoFile)
{
    m_tree.file("precious", "data");
    const std::string name = m_tree.path("precious") + '\0' + "more";
    EXPECT_FALSE(m_fs->removeFileUntil(name, later()));
    EXPECT_FALSE(m_fs->removeFile(name));
    EXPECT_THROW(m_fs->refreshLockFileUntil(name, later()), zvNoSuchDirectory);
    EXPECT_THROW(zvLockFile(name, zvLockFile::NO_REFRESH, m_fs), zvNoSuchDirectory);
    EXPECT_EQ("data", m_tree.content("precious"));
}

TEST_F(NetworkFs, ModificationTimeOfAMissingFileThrows)
{
    const std::string name = m_tree.root() + "/missing";
    EXPECT_EQ("File not found: " + name,
              textThrown<zvFileNotFoundError>([&] { m_fs->getModificationTime(name.c_str()); }));
    EXPECT_EQ("File not found: ", textThrown<zvFileNotFoundError>([&] { m_fs->getModificationTime(""); }));
}

TEST_F(NetworkFs, AnyMatch)
{
    m_tree.file("file.txt");
    m_tree.directory("sub");
    EXPECT_TRUE(m_fs->anyMatch(m_tree.path("*.txt").c_str()));
    EXPECT_TRUE(m_fs->anyMatch(m_tree.path("su?").c_str()));
    EXPECT_FALSE(m_fs->anyMatch(m_tree.path("*.doc").c_str()));
    EXPECT_FALSE(m_fs->anyMatch(m_tree.path("missing\\*").c_str()));
    EXPECT_FALSE(m_fs->anyMatch(""));
    EXPECT_FALSE(m_fs->anyMatch(nullptr));
}

/// Keeps what it is called with.
class Collector : public zvStringProcedure
{
public:
    void operator()(const char* path) const override { m_found.insert(path); }
    const std::set<std::string>& found() const { return m_found; }

private:
    mutable std::set<std::string> m_found;
};

TEST_F(NetworkFs, TheWalkIsTheOneOfTheLibrary)
{
    m_tree.file("a.txt");
    m_tree.directory("sub");
    m_tree.file("sub\\b.txt");
    const std::string pattern = m_tree.path("*");
    for (const int depth : {0, 1, 5})
        for (const bool stopAtFirst : {false, true}) {
            Collector files, directories, expectedFiles, expectedDirectories;
            const int found = m_fs->findMatchingFilesAndDirs(pattern.c_str(), files, directories, depth, stopAtFirst);
            EXPECT_EQ(zvFindMatchingFilesAndDirs(pattern.c_str(), expectedFiles, expectedDirectories, depth,
                                                 stopAtFirst),
                      found);
            EXPECT_EQ(expectedFiles.found(), files.found());
            EXPECT_EQ(expectedDirectories.found(), directories.found());
        }
}

TEST_F(NetworkFs, WritePermission)
{
    m_tree.file("file");
    const std::string name = m_tree.path("file");
    const unsigned short writable = m_fs->disableWritePermission(name.c_str());
    EXPECT_NE(0, writable & 0x80);
    EXPECT_TRUE(m_tree.isReadOnly("file"));
    const unsigned short readOnly = m_fs->enableWritePermission(name.c_str());
    EXPECT_EQ(0, readOnly & 0x80);
    EXPECT_FALSE(m_tree.isReadOnly("file"));
    EXPECT_EQ(0, m_fs->enableWritePermission(m_tree.path("missing").c_str()));
    EXPECT_EQ(0, m_fs->disableWritePermission(nullptr));
}

/// Prints what an operation on a refused name throws, and the sleeps before.
int refusedOperation(const std::vector<std::string>& arguments)
{
    const boost::shared_ptr<zvAbstractFS> fs = zvGetDefaultFSImp();
    try {
        if (arguments.at(0) == "refresh")
            fs->refreshLockFileUntil(arguments.at(1), later());
        else if (arguments.at(0) == "remove")
            fs->removeFileUntil(arguments.at(1), later());
        else
            fs->createFileExclusive(arguments.at(1).c_str());
        std::cout << "done";
    } catch (const zvPermissionDenied& error) {
        std::cout << "denied " << error.what();
    } catch (const std::exception& error) {
        std::cout << "other " << error.what();
    }
    const std::vector<long> sleeps = fake_clock::sleeps();
    std::cout << ' ' << sleeps.size() << ' ' << std::count(sleeps.begin(), sleeps.end(), 10) << std::endl;
    return 0;
}
const ChildMode refusedMode("refused", &refusedOperation);

/// A read-only file in a read-only directory: one of the two systems refuses
/// to remove it by the one, the other by the other.
TEST_F(NetworkFs, ARefusedRemovalIsThrownAtOnce)
{
    m_tree.directory("refused");
    m_tree.file("refused\\file");
    m_tree.makeReadOnly("refused\\file");
    m_tree.makeReadOnly("refused");
    const std::string name = m_tree.path("refused\\file");
    ProcessOptions options;
    options.unprivileged = true;
    EXPECT_EQ("denied Tried to obtain a lock on a directory without write permission: " + name + " 0 0\n",
              runChild("refused", {"remove", name}, options).output);
    EXPECT_TRUE(m_tree.exists("refused\\file"));
}

}  // namespace
