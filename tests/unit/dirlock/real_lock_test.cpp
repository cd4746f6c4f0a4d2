#include <zorvel/dirlock.h>
#include <zorvel/errors.h>

#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <memory>
#include <mutex>

// The lock on the real file system.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;

typedef std::vector<std::string> Names;

class RealLock : public testing::Test
{
protected:
    TemporaryTree m_tree;
    zvDirectoryExclusiveLock m_lock{m_tree.root(), "test", zvGetDefaultFSImp()};
};

TEST_F(RealLock, HoldsTheFileOfLevelZero)
{
    EXPECT_TRUE(m_tree.names().empty());
    ASSERT_TRUE(m_lock.tryAcquire(false));
    EXPECT_EQ(Names{".deploy_lock.0"}, m_tree.names());
    EXPECT_EQ(4u, m_tree.content(".deploy_lock.0").size());
    EXPECT_TRUE(m_lock.release());
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(RealLock, OtherFilesAreLeftAlone)
{
    m_tree.file("release.txt", "content");
    m_tree.directory(".deploy_lock.1");
    m_tree.file(".deploy_lock.x", "content");
    {
        const std::lock_guard<zvDirectoryExclusiveLock> guard(m_lock);
    }
    EXPECT_EQ((Names{".deploy_lock.1", ".deploy_lock.x", "release.txt"}), m_tree.names());
}

TEST_F(RealLock, TakesOverAStaleFile)
{
    m_tree.file(".deploy_lock.0", "dead");
    m_tree.age(".deploy_lock.0", -40);
    ASSERT_TRUE(m_lock.acquire(seconds(60), false));
    EXPECT_EQ(Names{".deploy_lock.0"}, m_tree.names());
    EXPECT_NE("dead", m_tree.content(".deploy_lock.0"));
    EXPECT_TRUE(m_lock.release());
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(RealLock, DoesNotTakeOverAFreshFile)
{
    m_tree.file(".deploy_lock.0", "held");
    m_tree.age(".deploy_lock.0", -25);
    EXPECT_FALSE(m_lock.acquire(milliseconds(50), false));
    EXPECT_EQ("held", m_tree.content(".deploy_lock.0"));
    EXPECT_EQ(Names{".deploy_lock.0"}, m_tree.names());
}

TEST_F(RealLock, AMissingDirectoryIsThrown)
{
    const std::string directory = m_tree.path("missing");
    zvDirectoryExclusiveLock lock(directory, "test", zvGetDefaultFSImp());
    for (int i = 0; i < 2; ++i) {
        try {
            lock.acquire(seconds(1), false);
            FAIL() << "acquired a missing directory";
        } catch (const zvNoSuchDirectory& error) {
            EXPECT_EQ("Tried to obtain a lock on a non-existent directory: " + directory + "/.deploy_lock.0",
                      error.what());
        }
    }
    EXPECT_FALSE(lock.isAcquired());
    EXPECT_FALSE(lock.release());
    m_tree.directory("missing");
    EXPECT_TRUE(lock.tryAcquire(false));
}

TEST_F(RealLock, AFileIsNoDirectory)
{
    m_tree.file("plain");
    zvDirectoryExclusiveLock lock(m_tree.path("plain"), "test", zvGetDefaultFSImp());
    EXPECT_THROW(lock.tryAcquire(false), zvNoSuchDirectory);
}

TEST_F(RealLock, OneSpellingOfADirectoryExcludesAnother)
{
    zvDirectoryExclusiveLock other(m_tree.root() + "\\", "test", zvGetDefaultFSImp());
    ASSERT_TRUE(m_lock.tryAcquire(false));
    EXPECT_FALSE(other.tryAcquire(false));
    EXPECT_TRUE(m_lock.release());
    EXPECT_TRUE(other.tryAcquire(false));
}

TEST_F(RealLock, DestructionFreesTheDirectory)
{
    std::unique_ptr<zvDirectoryExclusiveLock> lock(
        new zvDirectoryExclusiveLock(m_tree.root(), "test", zvGetDefaultFSImp()));
    ASSERT_TRUE(lock->tryAcquire(false));
    EXPECT_FALSE(m_lock.tryAcquire(false));
    lock.reset();
    EXPECT_TRUE(m_tree.names().empty());
    EXPECT_TRUE(m_lock.tryAcquire(false));
}

TEST_F(RealLock, AFileThatSomebodyRemovesIsBroughtBackByTheRefresh)
{
    ASSERT_TRUE(m_lock.tryAcquire(false));
    ASSERT_TRUE(zvGetDefaultFSImp()->removeFile(m_tree.path(".deploy_lock.0")));
    EXPECT_TRUE(m_lock.isAcquired());
    EXPECT_TRUE(m_lock.release());
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(RealLock, ADirectoryThatGoesWhileItIsHeldIsNoErrorOfTheRelease)
{
    m_tree.directory("sub");
    zvDirectoryExclusiveLock lock(m_tree.path("sub"), "test", zvGetDefaultFSImp());
    ASSERT_TRUE(lock.tryAcquire(true));
    ASSERT_TRUE(zvGetDefaultFSImp()->removeRF(m_tree.path("sub").c_str()));
    EXPECT_TRUE(lock.release());
    EXPECT_THROW(lock.tryAcquire(false), zvNoSuchDirectory);
}

TEST_F(RealLock, ADirectoryOfTwoByteCharactersIsLocked)
{
    // Its second byte is a backslash where the code page has such characters.
    m_tree.directory("\x95\x5c");
    zvDirectoryExclusiveLock lock(m_tree.path("\x95\x5c"), "test", zvGetDefaultFSImp());
    ASSERT_TRUE(lock.tryAcquire(false));
    EXPECT_TRUE(lock.release());
}

}  // namespace
