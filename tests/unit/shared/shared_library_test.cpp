/// What an application meets at the edge of the shared library: this program
/// links it as users do, with a Boost.Thread of its own accord, and not the
/// static core that the other tests see.

#include <zorvel/zorvel.h>

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <random>
#include <string>
#include <typeinfo>

namespace {

/// A directory of its own; '/' is understood everywhere.
class Directory
{
public:
    Directory()
        : m_path(std::filesystem::temp_directory_path() / ("zorvel_shared_" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directory(m_path);
    }
    ~Directory() { std::filesystem::remove_all(m_path); }

    std::string path() const { return m_path.generic_string(); }
    std::size_t entries() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_path), {}));
    }

private:
    std::filesystem::path m_path;
};

const boost::posix_time::time_duration withoutLimit(boost::posix_time::pos_infin);

/// A file system of the application's that lends the library's own and counts.
class CountingFS : public zvAbstractFS
{
public:
    CountingFS() : m_fs(zvGetDefaultFSImp()), creations(0) {}

    bool isDirectory(const char* path) override { return m_fs->isDirectory(path); }
    bool mkdirP(const char* path) override { return m_fs->mkdirP(path); }
    int removeEntry(const char* name) override { return m_fs->removeEntry(name); }
    bool removeRF(const char* path) override { return m_fs->removeRF(path); }
    bool fileExists(const char* name) override { return m_fs->fileExists(name); }
    bool createFileExclusive(const char* name) override
    {
        ++creations;
        return m_fs->createFileExclusive(name);
    }
    bool removeFileUntil(const std::string& name, const boost::posix_time::ptime& deadline) override
    {
        return m_fs->removeFileUntil(name, deadline);
    }
    bool refreshLockFileUntil(const std::string& name, const boost::posix_time::ptime& deadline) override
    {
        return m_fs->refreshLockFileUntil(name, deadline);
    }
    zvTime64 getModificationTime(const char* name) override { return m_fs->getModificationTime(name); }
    bool anyMatch(const char* pattern) override { return m_fs->anyMatch(pattern); }
    int findMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& onFile, const zvStringProcedure& onDir,
                                 int depth, bool stopAtFirst) override
    {
        return m_fs->findMatchingFilesAndDirs(pattern, onFile, onDir, depth, stopAtFirst);
    }
    unsigned short disableWritePermission(const char* path) override { return m_fs->disableWritePermission(path); }
    unsigned short enableWritePermission(const char* path) override { return m_fs->enableWritePermission(path); }

private:
    boost::shared_ptr<zvAbstractFS> m_fs;

public:
    int creations;
};

}  // namespace

TEST(SharedLibrary, AWaitingThreadIsInterruptedByTheApplicationsOwnBoost)
{
    const Directory directory;
    zvDirectoryExclusiveLock holder(directory.path(), "holder", zvGetDefaultFSImp());
    ASSERT_TRUE(holder.tryAcquire(false));

    zvDirectoryExclusiveLock waiter(directory.path(), "waiter", zvGetDefaultFSImp());
    std::atomic<bool> started(false), interrupted(false);
    boost::thread thread([&] {
        try {
            started = true;
            waiter.acquire(withoutLimit, false);
        } catch (const boost::thread_interrupted&) {
            interrupted = true;
        }
    });
    while (!started || directory.entries() < 2)
        boost::this_thread::yield();
    thread.interrupt();
    thread.join();

    EXPECT_TRUE(interrupted);
    EXPECT_FALSE(waiter.isAcquired());
    EXPECT_EQ(1u, directory.entries()) << "the place in the queue was left behind";
    // The waiter's mutex is free: the object can be used again.
    EXPECT_FALSE(waiter.release());
    EXPECT_TRUE(holder.release());
    EXPECT_TRUE(waiter.tryAcquire(false));
    EXPECT_TRUE(waiter.release());
    EXPECT_EQ(0u, directory.entries());
}

TEST(SharedLibrary, ExceptionsAreCaughtByTheirTypeOutsideTheLibrary)
{
    const Directory directory;
    const std::string missing = directory.path() + "/missing";
    zvDirectoryExclusiveLock lock(missing, "label", zvGetDefaultFSImp());
    try {
        lock.tryAcquire(false);
        FAIL() << "a missing directory was locked";
    } catch (const zvNoSuchDirectory& error) {
        EXPECT_EQ("Tried to obtain a lock on a non-existent directory: " + missing + "/.deploy_lock.0",
                  std::string(error.what()));
    }
    EXPECT_THROW(lock.tryAcquire(false), zvFileBasedLockError);
    EXPECT_THROW(lock.tryAcquire(false), std::exception);
}

TEST(SharedLibrary, TheLocksWorkOnAFileSystemOfTheApplication)
{
    const Directory directory;
    const auto fs = boost::make_shared<CountingFS>();
    {
        zvDirectoryExclusiveLock lock(directory.path(), "label", fs);
        EXPECT_TRUE(lock.tryAcquire(true));
        EXPECT_EQ(1, fs->creations);
    }
    EXPECT_EQ(0u, directory.entries());
}

TEST(SharedLibrary, ConstantsAreExported)
{
    // Their addresses, so that the library's own objects are meant.
    const int* const poll = &zvDirectoryExclusiveLock::ACQUIRE_POLL_INTERVAL_MSEC;
    const int* const refresh = &zvDirectoryExclusiveLock::REFRESH_INTERVAL_MSEC;
    const int* const stale = &zvDirectoryExclusiveLock::STALE_TIMEOUT_SEC;
    EXPECT_EQ(5, *poll);
    EXPECT_EQ(1000, *refresh);
    EXPECT_EQ(30, *stale);
}

TEST(SharedLibrary, BuffersOfTheLibraryAreFreedByIt)
{
    _namehash_context* const names = qx_namehash_create();
    ASSERT_NE(nullptr, names);
    const char* const one = qx_namehash_add(names, "one");
    EXPECT_STREQ("one", one);
    EXPECT_EQ(one, qx_namehash_add(names, "one"));
    qx_namehash_destroy(names);
    qxFree(nullptr);
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
