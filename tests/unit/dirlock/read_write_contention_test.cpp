#include <zorvel/dirlock.h>

#include "tests/support/temporary_tree.h"
#include "tests/unit/dirlock/eventually.h"

#include <boost/thread/thread.hpp>

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>

// Several threads, locks and copies at one real directory.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using boost::posix_time::time_duration;
using testing::ElementsAre;
using testing::IsEmpty;

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

const char writersFile[] = ".deploy_write_lock";

class ReadWriteContention : public testing::Test
{
protected:
    /// The files of readers and writers. Those of the guard and of compared
    /// clocks come and go.
    std::vector<std::string> marks() const
    {
        std::vector<std::string> names;
        for (const std::string& name : m_tree.names())
            if (name == writersFile || name.find(".deploy_read_lock.") == 0)
                names.push_back(name);
        return names;
    }

    TemporaryTree m_tree;
    const zvDirectoryReadWriteLock m_both{m_tree.root(), zvGetDefaultFSImp()};
    WriteLock m_holder = m_both.getWriteLock();
};

template <class Lock>
struct Making;

template <>
struct Making<ReadLock>
{
    static ReadLock from(const zvDirectoryReadWriteLock& both) { return both.getReadLock(); }
};

template <>
struct Making<WriteLock>
{
    static WriteLock from(const zvDirectoryReadWriteLock& both) { return both.getWriteLock(); }
};

/// A thread that waits in acquire, and so keeps the others from its lock.
template <class Lock>
class ReadWriteBusy : public ReadWriteContention
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_holder.tryAcquire(false));
        m_waiter = boost::thread([this] {
            try {
                m_acquired = m_lock.acquire(false);
            } catch (const boost::thread_interrupted&) {
                m_interrupted = true;
            }
        });
        ASSERT_TRUE(eventually([this] { return m_tree.exists(".deploy_lock.0"); }));
    }

    void TearDown() override
    {
        m_waiter.interrupt();
        m_waiter.join();
    }

    void expectBoundedByTheirTimeout()
    {
        Lock copy = m_lock;
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(copy.acquire(milliseconds(50), false));
        EXPECT_FALSE(m_lock.release(milliseconds(50)));
        const auto waited = std::chrono::steady_clock::now() - begin;
        EXPECT_GE(waited, std::chrono::milliseconds(90));
        EXPECT_LT(waited, std::chrono::seconds(15));
        EXPECT_THAT(marks(), ElementsAre(writersFile));
    }

    void expectNoWait()
    {
        for (const time_duration& timeout :
             {time_duration(0, 0, 0), time_duration(seconds(-5)), time_duration(boost::posix_time::neg_infin),
              time_duration(boost::posix_time::not_a_date_time)}) {
            EXPECT_FALSE(m_lock.acquire(timeout, false));
            EXPECT_FALSE(m_lock.release(timeout));
        }
        EXPECT_FALSE(m_lock.tryAcquire(true));
    }

    /// The answer comes when the waiting is over, and is that of its end.
    void expectIsAcquiredWaits()
    {
        std::atomic<bool> asked{false};
        std::atomic<bool> answer{false};
        boost::thread other([&] {
            answer = m_lock.isAcquired();
            asked = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        EXPECT_FALSE(asked);
        EXPECT_TRUE(m_holder.release());
        other.join();
        EXPECT_TRUE(answer);
    }

    void expectReleaseWaits()
    {
        std::atomic<bool> released{false};
        boost::thread other([&] { released = m_lock.release(); });
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_FALSE(released);
        EXPECT_TRUE(m_holder.release());
        other.join();
        EXPECT_TRUE(released);
        m_waiter.join();
        EXPECT_TRUE(m_acquired);
        EXPECT_THAT(m_tree.names(), IsEmpty());
    }

    /// It waits for its turn, and then finds the lock acquired.
    void expectSecondAcquireIsFalse()
    {
        std::atomic<bool> second{true};
        boost::thread other([&] { second = m_lock.acquire(seconds(60), false); });
        EXPECT_TRUE(m_holder.release());
        m_waiter.join();
        other.join();
        EXPECT_NE(second, m_acquired);
        EXPECT_EQ(1u, marks().size());
        EXPECT_TRUE(m_lock.release());
        EXPECT_FALSE(m_lock.release());
    }

    void expectInterruptionLeavesNothing()
    {
        m_waiter.interrupt();
        m_waiter.join();
        EXPECT_TRUE(m_interrupted);
        EXPECT_FALSE(m_acquired);
        EXPECT_THAT(m_tree.names(), ElementsAre(writersFile));
        EXPECT_FALSE(m_lock.tryAcquire(false));
        EXPECT_TRUE(m_holder.release());
        EXPECT_TRUE(m_lock.tryAcquire(false));
        EXPECT_TRUE(m_lock.release());
        EXPECT_THAT(m_tree.names(), IsEmpty());
    }

    Lock m_lock = Making<Lock>::from(m_both);
    boost::thread m_waiter;
    std::atomic<bool> m_acquired{false};
    std::atomic<bool> m_interrupted{false};
};

typedef ReadWriteBusy<ReadLock> ReaderBusy;
typedef ReadWriteBusy<WriteLock> WriterBusy;

TEST_F(ReaderBusy, OtherThreadsAreBoundedByTheirTimeout)
{
    expectBoundedByTheirTimeout();
}

TEST_F(WriterBusy, OtherThreadsAreBoundedByTheirTimeout)
{
    expectBoundedByTheirTimeout();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(m_lock.downgrade(milliseconds(50)).isAcquired());
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(45));
    EXPECT_THAT(marks(), ElementsAre(writersFile));
}

TEST_F(ReaderBusy, OtherThreadsWithoutTimeDoNotWait)
{
    expectNoWait();
}

TEST_F(WriterBusy, OtherThreadsWithoutTimeDoNotWait)
{
    expectNoWait();
    EXPECT_FALSE(m_lock.tryDowngrade().isAcquired());
    EXPECT_THAT(marks(), ElementsAre(writersFile));
}

TEST_F(ReaderBusy, IsAcquiredWaits)
{
    expectIsAcquiredWaits();
}

TEST_F(WriterBusy, IsAcquiredWaits)
{
    expectIsAcquiredWaits();
}

TEST_F(ReaderBusy, AReleaseWithoutLimitWaitsForTheAcquire)
{
    expectReleaseWaits();
}

TEST_F(WriterBusy, AReleaseWithoutLimitWaitsForTheAcquire)
{
    expectReleaseWaits();
}

TEST_F(WriterBusy, ADowngradeWithoutLimitWaitsForTheAcquire)
{
    std::atomic<bool> reads{false};
    std::atomic<bool> returned{false};
    boost::thread other([&] {
        const ReadLock reader = m_lock.downgrade();
        returned = true;
        reads = reader.isAcquired();
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(returned);
    EXPECT_TRUE(m_holder.release());
    other.join();
    EXPECT_TRUE(reads);
    EXPECT_FALSE(m_lock.isAcquired());
}

TEST_F(ReaderBusy, ASecondAcquireIsFalse)
{
    expectSecondAcquireIsFalse();
}

TEST_F(WriterBusy, ASecondAcquireIsFalse)
{
    expectSecondAcquireIsFalse();
}

TEST_F(ReaderBusy, AnInterruptedThreadLeavesTheLockFreeAndNoFile)
{
    expectInterruptionLeavesNothing();
}

TEST_F(WriterBusy, AnInterruptedThreadLeavesTheLockFreeAndNoFile)
{
    expectInterruptionLeavesNothing();
}

TEST_F(ReadWriteContention, ATimeoutIsKept)
{
    ASSERT_TRUE(m_holder.tryAcquire(false));
    ReadLock reader = m_both.getReadLock();
    WriteLock writer = m_both.getWriteLock();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(reader.acquire(milliseconds(60), false));
    EXPECT_FALSE(writer.acquire(milliseconds(60), false));
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited, std::chrono::milliseconds(105));
    EXPECT_LT(waited, std::chrono::seconds(15));
    EXPECT_THAT(m_tree.names(), ElementsAre(writersFile));
}

/// Waits without limit, so that nobody goes on without the guard.
TEST_F(ReadWriteContention, ManyReadersOrOneWriter)
{
    std::atomic<int> readers{0};
    std::atomic<int> writers{0};
    std::atomic<int> wrong{0};
    std::atomic<int> done{0};
    const int turns = 10;
    boost::thread_group threads;
    for (int i = 0; i < 3; ++i)
        threads.create_thread([&] {
            ReadLock lock = m_both.getReadLock();
            for (int turn = 0; turn < turns; ++turn) {
                EXPECT_TRUE(lock.acquire(turn % 2 == 0));
                ++readers;
                if (writers != 0)
                    ++wrong;
                --readers;
                ++done;
                EXPECT_TRUE(lock.release());
            }
        });
    for (int i = 0; i < 2; ++i)
        threads.create_thread([&] {
            WriteLock lock = m_both.getWriteLock();
            for (int turn = 0; turn < turns; ++turn) {
                EXPECT_TRUE(lock.acquire(turn % 2 == 0));
                if (++writers != 1 || readers != 0)
                    ++wrong;
                ++done;
                --writers;
                if (turn % 3 == 0)
                    EXPECT_TRUE(lock.downgrade().release());
                else
                    EXPECT_TRUE(lock.release());
            }
        });
    threads.join_all();
    EXPECT_EQ(0, wrong);
    EXPECT_EQ(5 * turns, done);
    EXPECT_THAT(m_tree.names(), IsEmpty());
}

TEST_F(ReadWriteContention, CopiesInManyThreadsShareOneHold)
{
    const ReadLock lock = m_both.getReadLock();
    std::atomic<int> acquisitions{0};
    std::atomic<int> releases{0};
    boost::thread_group threads;
    for (int i = 0; i < 6; ++i)
        threads.create_thread([&] {
            ReadLock copy = lock;
            for (int turn = 0; turn < 10; ++turn) {
                if (copy.acquire(seconds(100), false))
                    ++acquisitions;
                copy.isAcquired();
                if (copy.release())
                    ++releases;
            }
        });
    threads.join_all();
    EXPECT_EQ(acquisitions, releases);
    EXPECT_GE(acquisitions, 1);
    EXPECT_FALSE(lock.isAcquired());
    EXPECT_THAT(m_tree.names(), IsEmpty());
}

}  // namespace
