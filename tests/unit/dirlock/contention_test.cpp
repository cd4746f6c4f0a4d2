#include <zorvel/dirlock.h>

#include "tests/support/temporary_tree.h"
#include "tests/unit/dirlock/eventually.h"

#include <boost/thread/thread.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

// Several threads and lock objects at one real directory.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using boost::posix_time::time_duration;

typedef std::vector<std::string> Names;

class Contention : public testing::Test
{
protected:
    std::unique_ptr<zvDirectoryExclusiveLock> makeLock()
    {
        return std::unique_ptr<zvDirectoryExclusiveLock>(
            new zvDirectoryExclusiveLock(m_tree.root(), "test", zvGetDefaultFSImp()));
    }

    TemporaryTree m_tree;
    const std::unique_ptr<zvDirectoryExclusiveLock> m_holder = makeLock();
    const std::unique_ptr<zvDirectoryExclusiveLock> m_lock = makeLock();
};

/// A thread that waits in acquire, and so keeps the others from its object.
class ContentionBusy : public Contention
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_holder->tryAcquire(false));
        m_waiter = boost::thread([this] {
            try {
                m_acquired = m_lock->acquire(false);
            } catch (const boost::thread_interrupted&) {
                m_interrupted = true;
            }
        });
        ASSERT_TRUE(eventually([this] { return m_tree.exists(".deploy_lock.1"); }));
    }

    void TearDown() override
    {
        m_waiter.interrupt();
        m_waiter.join();
    }

    /// The file of compared clocks comes and goes.
    Names levels() const
    {
        Names names;
        for (const std::string& name : m_tree.names())
            if (name.find(".deploy_lock.") == 0)
                names.push_back(name);
        return names;
    }

    boost::thread m_waiter;
    std::atomic<bool> m_acquired{false};
    std::atomic<bool> m_interrupted{false};
};

TEST_F(ContentionBusy, AnotherThreadIsBoundedByItsOwnTimeout)
{
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(m_lock->acquire(milliseconds(50), false));
    EXPECT_FALSE(m_lock->release(milliseconds(50)));
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited, std::chrono::milliseconds(90));
    EXPECT_LT(waited, std::chrono::seconds(15));
    EXPECT_EQ((Names{".deploy_lock.0", ".deploy_lock.1"}), levels());
}

TEST_F(ContentionBusy, AnotherThreadWithoutTimeDoesNotWait)
{
    for (const time_duration& timeout :
         {time_duration(0, 0, 0), time_duration(seconds(-5)), time_duration(boost::posix_time::neg_infin),
          time_duration(boost::posix_time::not_a_date_time)}) {
        EXPECT_FALSE(m_lock->acquire(timeout, false));
        EXPECT_FALSE(m_lock->release(timeout));
    }
    EXPECT_FALSE(m_lock->tryAcquire(true));
    EXPECT_FALSE(m_lock->try_lock());
    EXPECT_FALSE(m_lock->noRefresh().try_lock());
    EXPECT_EQ((Names{".deploy_lock.0", ".deploy_lock.1"}), levels());
}

TEST_F(ContentionBusy, IsAcquiredDoesNotWait)
{
    EXPECT_FALSE(m_lock->isAcquired());
    EXPECT_TRUE(m_holder->isAcquired());
}

TEST_F(ContentionBusy, AReleaseWithoutLimitWaitsForTheAcquire)
{
    std::atomic<bool> released{false};
    boost::thread releaser([&] { released = m_lock->release(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(released);
    ASSERT_TRUE(m_holder->release());
    releaser.join();
    m_waiter.join();
    EXPECT_TRUE(released);
    EXPECT_TRUE(m_acquired);
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(ContentionBusy, AnAcquireWithALongTimeoutCountsOn)
{
    std::atomic<bool> second{false};
    boost::thread other([&] { second = m_lock->acquire(seconds(60), false); });
    ASSERT_TRUE(m_holder->release());
    other.join();
    EXPECT_TRUE(second);
    EXPECT_TRUE(m_lock->release());
    EXPECT_TRUE(m_lock->isAcquired());
    EXPECT_TRUE(m_lock->release());
    EXPECT_FALSE(m_lock->isAcquired());
}

TEST_F(ContentionBusy, AnInterruptedThreadLeavesTheObjectFreeAndNoFile)
{
    m_waiter.interrupt();
    m_waiter.join();
    EXPECT_TRUE(m_interrupted);
    EXPECT_FALSE(m_acquired);
    EXPECT_EQ(Names{".deploy_lock.0"}, m_tree.names());
    EXPECT_FALSE(m_lock->tryAcquire(false));
    ASSERT_TRUE(m_holder->release());
    EXPECT_TRUE(m_lock->tryAcquire(false));
    EXPECT_TRUE(m_lock->release());
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(Contention, ATimeoutIsKept)
{
    ASSERT_TRUE(m_holder->tryAcquire(false));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(m_lock->acquire(milliseconds(100), false));
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited, std::chrono::milliseconds(95));
    EXPECT_LT(waited, std::chrono::seconds(15));
    EXPECT_EQ(Names{".deploy_lock.0"}, m_tree.names());
}

TEST_F(Contention, ThreadsWithObjectsOfTheirOwnTakeTurns)
{
    const int threadCount = 6;
    const int turns = 15;
    std::atomic<int> inside{0};
    std::atomic<int> overlaps{0};
    std::atomic<int> done{0};
    boost::thread_group threads;
    for (int i = 0; i < threadCount; ++i)
        threads.create_thread([&] {
            const auto lock = makeLock();
            for (int turn = 0; turn < turns; ++turn) {
                if (!lock->acquire(seconds(100), turn % 2 == 0))
                    continue;
                if (++inside != 1)
                    ++overlaps;
                --inside;
                ++done;
                lock->release();
            }
        });
    threads.join_all();
    EXPECT_EQ(0, overlaps);
    EXPECT_EQ(threadCount * turns, done);
    EXPECT_TRUE(m_tree.names().empty());
}

TEST_F(Contention, OneObjectCountsTheAcquisitionsOfAllThreads)
{
    boost::thread_group threads;
    for (int i = 0; i < 8; ++i)
        threads.create_thread([&] {
            for (int turn = 0; turn < 20; ++turn) {
                EXPECT_TRUE(m_lock->acquire(seconds(100), false));
                EXPECT_TRUE(m_lock->isAcquired());
                EXPECT_TRUE(m_lock->release());
            }
        });
    threads.join_all();
    EXPECT_FALSE(m_lock->isAcquired());
    EXPECT_FALSE(m_lock->release());
    EXPECT_TRUE(m_tree.names().empty());
}

}  // namespace
