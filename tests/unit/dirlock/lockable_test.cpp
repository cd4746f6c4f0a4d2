#include "tests/support/fake_timer.h"
#include "tests/unit/dirlock/scene.h"

#include <gmock/gmock.h>

#include <mutex>

// The lock and its proxy as standard lockables.

namespace {

using namespace zorvel::test;

class Lockable : public testing::Test
{
protected:
    Scene m_scene;
    zvDirectoryExclusiveLock& m_lock = m_scene.lock();
};

TEST_F(Lockable, LockAndUnlock)
{
    m_lock.lock();
    EXPECT_TRUE(m_lock.isAcquired());
    EXPECT_EQ(1u, fake_timer::running());
    m_lock.unlock();
    EXPECT_FALSE(m_lock.isAcquired());
    EXPECT_FALSE(m_scene.isTaken(0));
    m_lock.unlock();  // drops the answer
}

TEST_F(Lockable, LockWaitsWithoutLimit)
{
    m_scene.take(0);
    m_scene.before("create #0", 3, [&] { m_scene.free(0); });
    m_lock.lock();
    EXPECT_TRUE(m_lock.isAcquired());
    EXPECT_EQ(1u, m_scene.countOf("remove #1 +inf -> true"));
}

TEST_F(Lockable, TryLock)
{
    EXPECT_TRUE(m_lock.try_lock());
    EXPECT_EQ(1u, fake_timer::running());
    EXPECT_TRUE(m_lock.try_lock());
    m_lock.unlock();
    m_lock.unlock();
    m_scene.take(0);
    EXPECT_FALSE(m_lock.try_lock());
    EXPECT_EQ("remove #-1 now -> false", m_scene.operations().back());
}

TEST_F(Lockable, LockGuard)
{
    {
        const std::lock_guard<zvDirectoryExclusiveLock> guard(m_lock);
        EXPECT_TRUE(m_scene.isTaken(0));
    }
    EXPECT_FALSE(m_scene.isTaken(0));
}

TEST_F(Lockable, UniqueLock)
{
    std::unique_lock<zvDirectoryExclusiveLock> lock(m_lock, std::try_to_lock);
    EXPECT_TRUE(lock.owns_lock());
    lock.unlock();
    m_scene.take(0);
    EXPECT_FALSE(lock.try_lock());
    m_scene.free(0);
    lock.lock();
    EXPECT_TRUE(m_lock.isAcquired());
}

TEST_F(Lockable, TheProxyDoesNotRefresh)
{
    zvDirectoryExclusiveLock::no_refresh_lock_proxy proxy = m_lock.noRefresh();
    EXPECT_EQ(0u, m_scene.operations().size());
    proxy.lock();
    EXPECT_TRUE(m_lock.isAcquired());
    EXPECT_TRUE(proxy.try_lock());
    EXPECT_EQ(0u, fake_timer::set());
    proxy.unlock();
    EXPECT_TRUE(m_lock.isAcquired());
    proxy.unlock();
    EXPECT_FALSE(m_lock.isAcquired());
    EXPECT_FALSE(m_scene.isTaken(0));
}

TEST_F(Lockable, TheProxyDoesNotWaitWhenItTries)
{
    m_scene.take(0);
    EXPECT_FALSE(m_lock.noRefresh().try_lock());
    EXPECT_EQ("remove #-1 now -> false", m_scene.operations().back());
}

TEST_F(Lockable, TheProxyWaitsWithoutLimit)
{
    m_scene.take(0);
    m_scene.before("create #0", 3, [&] { m_scene.free(0); });
    m_lock.noRefresh().lock();
    EXPECT_EQ(1u, m_scene.countOf("remove #1 +inf -> true"));
    EXPECT_EQ(0u, fake_timer::set());
}

TEST_F(Lockable, TheProxyIsAValueAndLockable)
{
    zvDirectoryExclusiveLock::no_refresh_lock_proxy proxy = m_lock.noRefresh();
    zvDirectoryExclusiveLock::no_refresh_lock_proxy copy = proxy;
    {
        const std::lock_guard<zvDirectoryExclusiveLock::no_refresh_lock_proxy> guard(copy);
        EXPECT_TRUE(m_lock.isAcquired());
    }
    EXPECT_FALSE(m_lock.isAcquired());
    std::unique_lock<zvDirectoryExclusiveLock::no_refresh_lock_proxy> lock(proxy, std::defer_lock);
    EXPECT_TRUE(lock.try_lock());
}

}  // namespace
