#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include "tests/support/recording_fs.h"
#include "tests/support/temporary_tree.h"

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

// Lock files on the real file system, refreshed by real threads.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;

bool eventually(const std::function<bool()>& holds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

class RealLockFile : public testing::Test
{
protected:
    std::unique_ptr<zvLockFile> make(const boost::posix_time::time_duration& interval)
    {
        return std::unique_ptr<zvLockFile>(new zvLockFile(m_name, interval, zvGetDefaultFSImp()));
    }

    /// Waits until the file has been refreshed so many times more.
    bool isRefreshed(int times)
    {
        std::string last = m_tree.content("lock");
        return eventually([&] {
            const std::string now = m_tree.content("lock");
            if (now.size() == 4 && now != last) {
                last = now;
                --times;
            }
            return times <= 0;
        });
    }

    TemporaryTree m_tree;
    const std::string m_name = m_tree.path("lock");
};

TEST_F(RealLockFile, ExistsWhileTheObjectLives)
{
    {
        zvLockFile file(m_name, zvLockFile::NO_REFRESH, zvGetDefaultFSImp());
        EXPECT_TRUE(m_tree.exists("lock"));
        EXPECT_TRUE(file);
        EXPECT_EQ(4u, m_tree.content("lock").size());
    }
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(RealLockFile, IsRefreshedAgainAndAgain)
{
    const auto file = make(milliseconds(10));
    EXPECT_TRUE(isRefreshed(5));
}

TEST_F(RealLockFile, ItsTimeAdvances)
{
    const auto file = make(milliseconds(1000));
    const long long begin = m_tree.modificationTime("lock");
    EXPECT_TRUE(eventually([&] { return m_tree.modificationTime("lock") >= begin + 2; }));
}

TEST_F(RealLockFile, IsNotBroughtBackAfterDestruction)
{
    for (int i = 0; i < 20; ++i) {
        auto file = make(milliseconds(1));
        ASSERT_TRUE(isRefreshed(1));
        file.reset();
        ASSERT_FALSE(m_tree.exists("lock"));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(m_tree.exists("lock"));
}

TEST_F(RealLockFile, IsNotBroughtBackByARefreshThatIsJustDue)
{
    for (int i = 0; i < 400; ++i) {
        auto file = make(boost::posix_time::microseconds(i % 2 == 0 ? 0 : 150));
        std::this_thread::sleep_for(std::chrono::microseconds(i));
        file.reset();
        ASSERT_FALSE(m_tree.exists("lock"));
    }
}

TEST_F(RealLockFile, TheFirstCopyToGoEndsTheRefreshForBoth)
{
    auto file = make(milliseconds(1));
    ASSERT_TRUE(isRefreshed(1));
    std::unique_ptr<zvLockFile>(new zvLockFile(*file)).reset();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(m_tree.exists("lock"));
    EXPECT_FALSE(*file);
}

TEST_F(RealLockFile, APendingInterruptionDoesNotKeepTheDestructorFromItsWork)
{
    const boost::shared_ptr<RecordingFs> fs = boost::make_shared<RecordingFs>();
    fs->addDirectory("D");
    // The destructor has to wait for a refresh under way.
    std::atomic<bool> underWay(false);
    fs->setHook([&](const Operation& operation) {
        if (operation.number == 1)
            return;
        underWay = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    });
    std::atomic<bool> pendingAfterwards(false);
    boost::thread owner([&] {
        std::unique_ptr<zvLockFile> file(new zvLockFile("D/lock", milliseconds(1), fs));
        while (!underWay || !boost::this_thread::interruption_requested())
            boost::this_thread::yield();
        file.reset();
        pendingAfterwards = boost::this_thread::interruption_requested();
    });
    owner.interrupt();
    owner.join();
    EXPECT_TRUE(pendingAfterwards);
    EXPECT_EQ(0u, fs->log().back().find("remove D/lock "));
    EXPECT_TRUE(fs->files().empty());
}

TEST_F(RealLockFile, ManyAtOnce)
{
    std::vector<std::unique_ptr<zvLockFile>> files;
    for (int i = 0; i < 20; ++i)
        files.emplace_back(new zvLockFile(m_name + std::to_string(i), milliseconds(3), zvGetDefaultFSImp()));
    EXPECT_EQ(20u, m_tree.names().size());
    files.clear();
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(RealLockFile, AMissingDirectoryIsThrown)
{
    const std::string name = m_tree.path("missing\\lock");
    try {
        zvLockFile file(name, seconds(1), zvGetDefaultFSImp());
        FAIL() << "made in a missing directory";
    } catch (const zvNoSuchDirectory& error) {
        EXPECT_EQ("Tried to obtain a lock on a non-existent directory: " + name, error.what());
    }
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(RealLockFile, ADirectoryThatGoesEndsTheRefreshAndNothingElse)
{
    m_tree.directory("sub");
    std::unique_ptr<zvLockFile> file(new zvLockFile(m_tree.path("sub\\lock"), milliseconds(2), zvGetDefaultFSImp()));
    // A system that ends a directory only with its last handle can have it made again by a refresh that came between,
    // after the removal was told that it had succeeded.
    ASSERT_TRUE(eventually([&] {
        zvGetDefaultFSImp()->removeRF(m_tree.path("sub").c_str());
        return !m_tree.exists("sub");
    }));
    EXPECT_THROW(static_cast<void>(static_cast<bool>(*file)), zvNoSuchDirectory);
    EXPECT_NO_THROW(file.reset());
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(RealLockFile, StalenessOfRealFiles)
{
    m_tree.file("fresh");
    m_tree.file("old");
    m_tree.age("old", -100);
    const boost::shared_ptr<zvAbstractFS> fs = zvGetDefaultFSImp();
    zvLockFileIsStale isStale(zvPathString(m_tree.root()), fs);
    const boost::posix_time::ptime longGone(boost::posix_time::neg_infin);
    EXPECT_FALSE(isStale(m_tree.path("fresh").c_str(), 30, longGone));
    EXPECT_TRUE(isStale(m_tree.path("old").c_str(), 30, longGone));
    EXPECT_THROW(isStale(m_tree.path("missing").c_str(), 30, longGone), zvFileNotFoundError);
    EXPECT_EQ((std::vector<std::string>{"fresh", "old"}), m_tree.names());
}

TEST_F(RealLockFile, StalenessInAMissingDirectory)
{
    zvLockFileIsStale isStale(zvPathString(m_tree.path("missing")), zvGetDefaultFSImp());
    EXPECT_THROW(isStale(m_tree.path("missing\\lock").c_str(), 30,
                         boost::posix_time::ptime(boost::posix_time::pos_infin)),
                 zvNoSuchDirectory);
}

}  // namespace
