#include "tests/unit/dirlock/read_write_order.h"

#include <boost/thread/thread.hpp>

#include <functional>

// While one thread is in a call, another that does not wait is turned away
// from the same lock and changes nothing.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

class ReadWriteTurns : public testing::Test
{
protected:
    /// Runs something on another thread in the middle of a call, and counts
    /// the operations that makes.
    void during(const std::string& operation, const std::function<void()>& attempt)
    {
        m_scene.before(operation, 1, [this, attempt] {
            const std::size_t before = m_scene.operations().size();
            boost::thread other(attempt);
            other.join();
            m_operations = m_scene.operations().size() - before;
            m_ran = true;
        });
    }

    void expectTurnedAway()
    {
        EXPECT_TRUE(m_ran);
        EXPECT_EQ(0u, m_operations);
    }

    /// Every call that changes something.
    template <class Lock>
    static void tryAll(Lock lock)
    {
        EXPECT_FALSE(lock.tryAcquire(false));
        EXPECT_FALSE(lock.acquire(milliseconds(-1), true));
        EXPECT_FALSE(lock.release(milliseconds(0)));
    }

    ReadWriteScene m_scene;
    ReadLock m_reader = m_scene.reader();
    WriteLock m_writer = m_scene.writer();
    std::size_t m_operations = 0;
    bool m_ran = false;
};

TEST_F(ReadWriteTurns, DuringAnAcquireOfAReader)
{
    during("anyMatch W", [&] { tryAll(m_reader); });
    EXPECT_TRUE(m_scene.reader().tryAcquire(false));
    expectTurnedAway();
    EXPECT_TRUE(m_reader.isAcquired());
}

TEST_F(ReadWriteTurns, DuringAnAcquireOfAWriter)
{
    during("anyMatch W", [&] {
        tryAll(m_writer);
        EXPECT_FALSE(m_writer.tryDowngrade().isAcquired());
    });
    EXPECT_TRUE(m_scene.writer().tryAcquire(false));
    expectTurnedAway();
    EXPECT_TRUE(m_writer.isAcquired());
}

TEST_F(ReadWriteTurns, DuringADowngrade)
{
    ASSERT_TRUE(m_writer.tryAcquire(false));
    during("create own1", [&] {
        tryAll(m_writer);
        EXPECT_FALSE(m_writer.tryDowngrade().isAcquired());
    });
    const ReadLock reader = m_scene.writer().downgrade();
    expectTurnedAway();
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_FALSE(m_writer.isAcquired());
    EXPECT_THAT(m_scene.shortFiles(), testing::ElementsAre("own1"));
}

TEST_F(ReadWriteTurns, DuringARelease)
{
    ASSERT_TRUE(m_reader.tryAcquire(false));
    during("remove own1", [&] { tryAll(m_reader); });
    EXPECT_TRUE(m_scene.reader().release());
    expectTurnedAway();
    EXPECT_FALSE(m_reader.isAcquired());
    EXPECT_TRUE(m_scene.shortFiles().empty());
}

/// Locks of their own only meet in the directory.
TEST_F(ReadWriteTurns, AnotherLockHasATurnOfItsOwn)
{
    ReadLock other = m_scene.both().getReadLock();
    bool acquired = false;
    during("anyMatch W", [&] { acquired = other.tryAcquire(false); });
    EXPECT_TRUE(m_reader.tryAcquire(false));
    EXPECT_TRUE(acquired);
    EXPECT_GT(m_operations, 0u);
}

}  // namespace
