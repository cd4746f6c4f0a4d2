#include "tests/unit/dirlock/scene.h"

#include <gmock/gmock.h>

// Timeouts of every kind. The universal clock is hours away from the local
// one: deadlines of files are local.

namespace {

using namespace zorvel::test;
using boost::posix_time::hours;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using boost::posix_time::time_duration;

const time_duration huge(hours(24 * 365) * 200000);
const time_duration withoutLimit(boost::posix_time::pos_infin);

class Timeouts : public testing::TestWithParam<time_duration>
{
protected:
    Timeouts() { fake_clock::setUniversalOffset(hours(-9)); }

    Scene m_scene;
};

class NoTime : public Timeouts
{
};

TEST_P(NoTime, TakesAFreeDirectory)
{
    EXPECT_TRUE(m_scene.lock().acquire(GetParam(), false));
    EXPECT_TRUE(m_scene.isTaken(0));
    EXPECT_EQ(std::vector<long>{5}, fake_clock::sleeps());
}

TEST_P(NoTime, DoesNotWaitForATakenDirectory)
{
    m_scene.take(0);
    EXPECT_FALSE(m_scene.lock().acquire(GetParam(), false));
    EXPECT_EQ(std::vector<std::string>{"D/.deploy_lock.0"}, m_scene.fs().files());
    EXPECT_LE(fake_clock::sleeps().size(), 2u);
    EXPECT_FALSE(m_scene.lock().isAcquired());
}

TEST_P(NoTime, ReleasesWhenNobodyIsBusy)
{
    EXPECT_FALSE(m_scene.lock().release(GetParam()));
    ASSERT_TRUE(m_scene.lock().tryAcquire(false));
    EXPECT_TRUE(m_scene.lock().acquire(GetParam(), false));
    EXPECT_TRUE(m_scene.lock().release(GetParam()));
    EXPECT_TRUE(m_scene.lock().release(GetParam()));
    EXPECT_FALSE(m_scene.isTaken(0));
}

INSTANTIATE_TEST_SUITE_P(Kinds, NoTime,
                         testing::Values(time_duration(0, 0, 0), milliseconds(-1), seconds(-100000), -huge,
                                         time_duration(boost::posix_time::neg_infin),
                                         time_duration(boost::posix_time::not_a_date_time)));

class EndlessTime : public Timeouts
{
};

TEST_P(EndlessTime, WaitsForATakenDirectory)
{
    m_scene.take(0);
    m_scene.before("mtime #0", 0, [&] { m_scene.take(0); });
    m_scene.before("create #0", 2000, [&] { m_scene.free(0); });
    EXPECT_TRUE(m_scene.lock().acquire(GetParam(), false));
    EXPECT_EQ(2001u, fake_clock::sleeps().size());
}

TEST_P(EndlessTime, IsTheDeadlineOfEveryFileOperation)
{
    m_scene.take(0);
    m_scene.before("mtime #0", 0, [&] { m_scene.take(0); });
    m_scene.before("create #0", 300, [&] { m_scene.free(0); });
    EXPECT_TRUE(m_scene.lock().acquire(GetParam(), false));
    EXPECT_EQ(1u, m_scene.countOf("remove CAL +inf -> true"));
    EXPECT_EQ(1u, m_scene.countOf("refresh #1 +inf -> true"));
    EXPECT_EQ(1u, m_scene.countOf("remove #1 +inf -> true"));
}

TEST_P(EndlessTime, IsEndedByAFullQueue)
{
    for (int level = 0; level < 1024; ++level)
        m_scene.take(level);
    EXPECT_FALSE(m_scene.lock().acquire(GetParam(), false));
}

TEST_P(EndlessTime, Releases)
{
    EXPECT_FALSE(m_scene.lock().release(GetParam()));
    EXPECT_TRUE(m_scene.lock().acquire(GetParam(), false));
    EXPECT_TRUE(m_scene.lock().release(GetParam()));
    EXPECT_FALSE(m_scene.isTaken(0));
}

INSTANTIATE_TEST_SUITE_P(Kinds, EndlessTime, testing::Values(withoutLimit, huge));

TEST_F(Timeouts, WithoutATimeoutItIsEndless)
{
    m_scene.take(0);
    m_scene.before("mtime #0", 0, [&] { m_scene.take(0); });
    m_scene.before("create #0", 300, [&] { m_scene.free(0); });
    EXPECT_TRUE(m_scene.lock().acquire(false));
    EXPECT_EQ(1u, m_scene.countOf("remove #1 +inf -> true"));
    EXPECT_TRUE(m_scene.lock().release());
}

TEST_F(Timeouts, AnOrdinaryOneIsCountedFromTheLocalClock)
{
    m_scene.take(0);
    EXPECT_FALSE(m_scene.lock().acquire(seconds(1), false));
    EXPECT_EQ(seconds(1), fake_clock::now() - fake_clock::start());
    EXPECT_EQ("remove #1 now -> true", m_scene.operations().back());
}

TEST_F(Timeouts, ATryIsATimeoutOfZero)
{
    m_scene.take(0);
    EXPECT_FALSE(m_scene.lock().tryAcquire(false));
    EXPECT_EQ("remove #-1 now -> false", m_scene.operations().back());
}

}  // namespace
