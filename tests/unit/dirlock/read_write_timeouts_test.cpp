#include "tests/unit/dirlock/read_write_order.h"

// Timeouts of every kind, of both sides. The universal clock is hours away
// from the local one: deadlines of files are local.

namespace {

using namespace zorvel::test;
using boost::posix_time::hours;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using boost::posix_time::time_duration;
using testing::ElementsAre;

const time_duration huge(hours(24 * 365) * 200000);
const time_duration century(hours(24 * 365 * 100));
const time_duration withoutLimit(boost::posix_time::pos_infin);

class ReadWriteTimeouts : public testing::TestWithParam<time_duration>
{
protected:
    ReadWriteTimeouts() { fake_clock::setUniversalOffset(hours(-9)); }

    ReadWriteScene m_scene;
};

class ReadWriteNoTime : public ReadWriteTimeouts
{
};

TEST_P(ReadWriteNoTime, TakesAFreeDirectory)
{
    EXPECT_TRUE(m_scene.reader().acquire(GetParam(), false));
    EXPECT_TRUE(m_scene.reader().release());
    EXPECT_TRUE(m_scene.writer().acquire(GetParam(), false));
    EXPECT_EQ((std::vector<long>{5, 5}), fake_clock::sleeps());
}

TEST_P(ReadWriteNoTime, AReaderLooksOnce)
{
    m_scene.addWriter();
    EXPECT_FALSE(m_scene.reader().acquire(GetParam(), false));
    EXPECT_EQ(1u, m_scene.countOf("anyMatch W"));
    EXPECT_EQ(std::vector<long>{5}, fake_clock::sleeps());
    EXPECT_THAT(m_scene.shortFiles(), ElementsAre("W"));
}

TEST_P(ReadWriteNoTime, AWriterLooksOnce)
{
    m_scene.addReader(1);
    EXPECT_FALSE(m_scene.writer().acquire(GetParam(), false));
    EXPECT_EQ(1u, m_scene.countOf("walk R*"));
    EXPECT_EQ(std::vector<long>{5}, fake_clock::sleeps());
    EXPECT_THAT(m_scene.shortFiles(), ElementsAre("R1"));
}

TEST_P(ReadWriteNoTime, StaleFilesAreClearedAllTheSame)
{
    m_scene.addWriter(40);
    EXPECT_TRUE(m_scene.reader().acquire(GetParam(), false));
    EXPECT_TRUE(m_scene.reader().release());
    m_scene.addWriter(40);
    m_scene.addReader(1, 40);
    EXPECT_TRUE(m_scene.writer().acquire(GetParam(), false));
    EXPECT_THAT(m_scene.shortFiles(), ElementsAre("W"));
}

TEST_P(ReadWriteNoTime, DoesNotWaitForAGuard)
{
    m_scene.take(0);
    EXPECT_TRUE(m_scene.reader().acquire(GetParam(), false));
    EXPECT_TRUE(m_scene.reader().release());
    EXPECT_TRUE(m_scene.writer().acquire(GetParam(), false));
    EXPECT_LE(fake_clock::sleeps().size(), 4u);
    EXPECT_TRUE(m_scene.isTaken(0));
}

TEST_P(ReadWriteNoTime, ReleasesAndDowngradesWhenNobodyIsBusy)
{
    EXPECT_FALSE(m_scene.reader().release(GetParam()));
    EXPECT_FALSE(m_scene.writer().release(GetParam()));
    EXPECT_FALSE(m_scene.writer().downgrade(GetParam()).isAcquired());
    ASSERT_TRUE(m_scene.writer().tryAcquire(false));
    zvDirectoryReadWriteLock::ReadLock reader = m_scene.writer().downgrade(GetParam());
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_TRUE(reader.release(GetParam()));
    ASSERT_TRUE(m_scene.writer().tryAcquire(false));
    EXPECT_TRUE(m_scene.writer().release(GetParam()));
    EXPECT_TRUE(m_scene.shortFiles().empty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, ReadWriteNoTime,
                         testing::Values(time_duration(0, 0, 0), milliseconds(-1), seconds(-100000), -century, -huge,
                                         time_duration(boost::posix_time::neg_infin),
                                         time_duration(boost::posix_time::not_a_date_time)));

class ReadWriteEndlessTime : public ReadWriteTimeouts
{
protected:
    /// Others refresh their files at every look.
    void keepFresh()
    {
        m_scene.before("mtime W", 0, [&] { m_scene.addWriter(); });
        m_scene.before("mtime R1", 0, [&] { m_scene.addReader(1); });
        m_scene.before("mtime #0", 0, [&] { m_scene.take(0); });
    }
};

TEST_P(ReadWriteEndlessTime, AReaderWaits)
{
    m_scene.addWriter();
    keepFresh();
    m_scene.before("anyMatch W", 1001, [&] { m_scene.dropWriter(); });
    EXPECT_TRUE(m_scene.reader().acquire(GetParam(), false));
    EXPECT_EQ(2001u, fake_clock::sleeps().size());
    EXPECT_EQ(1u, m_scene.countOf("remove CAL +inf -> true"));
}

TEST_P(ReadWriteEndlessTime, AWriterWaits)
{
    m_scene.addReader(1);
    keepFresh();
    m_scene.before("walk R*", 1001, [&] { m_scene.dropReader(1); });
    EXPECT_TRUE(m_scene.writer().acquire(GetParam(), false));
    EXPECT_EQ(2001u, fake_clock::sleeps().size());
    EXPECT_EQ(1u, m_scene.countOf("remove CAL +inf -> true"));
}

TEST_P(ReadWriteEndlessTime, IsTheDeadlineOfEveryRemoval)
{
    m_scene.addReader(1, 40);
    m_scene.addWriter(40);
    EXPECT_TRUE(m_scene.writer().acquire(GetParam(), false));
    EXPECT_EQ(1u, m_scene.countOf("remove R1 +inf -> true"));
    EXPECT_EQ(1u, m_scene.countOf("remove W +inf -> true"));
}

TEST_P(ReadWriteEndlessTime, ARemovalByAReaderHasASecond)
{
    m_scene.addWriter(40);
    EXPECT_TRUE(m_scene.reader().acquire(GetParam(), false));
    EXPECT_EQ(1u, m_scene.countOf("remove W +1000000us -> true"));
}

TEST_P(ReadWriteEndlessTime, TheGuardIsWaitedForAsLong)
{
    m_scene.take(0);
    keepFresh();
    m_scene.before("create #0", 1000, [&] { m_scene.free(0); });
    EXPECT_TRUE(m_scene.reader().acquire(GetParam(), false));
    EXPECT_EQ(1u, m_scene.countOf("remove #1 +inf -> true"));
}

TEST_P(ReadWriteEndlessTime, TheGuardOfAWriterIsWaitedForAsLong)
{
    m_scene.take(0);
    keepFresh();
    m_scene.before("create #0", 1000, [&] { m_scene.free(0); });
    EXPECT_TRUE(m_scene.writer().acquire(GetParam(), false));
    EXPECT_EQ(1u, m_scene.countOf("remove #1 +inf -> true"));
}

TEST_P(ReadWriteEndlessTime, ReleasesAndDowngrades)
{
    EXPECT_FALSE(m_scene.reader().release(GetParam()));
    EXPECT_FALSE(m_scene.writer().release(GetParam()));
    ASSERT_TRUE(m_scene.writer().acquire(GetParam(), false));
    zvDirectoryReadWriteLock::ReadLock reader = m_scene.writer().downgrade(GetParam());
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_TRUE(reader.release(GetParam()));
    EXPECT_TRUE(m_scene.shortFiles().empty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, ReadWriteEndlessTime, testing::Values(withoutLimit, huge, century + hours(24)));

TEST_F(ReadWriteTimeouts, WithoutATimeoutItIsEndless)
{
    m_scene.addWriter(40);
    EXPECT_TRUE(m_scene.writer().acquire(false));
    EXPECT_EQ(1u, m_scene.countOf("remove W +inf -> true"));
    EXPECT_TRUE(m_scene.writer().release());
    m_scene.addWriter(40);
    EXPECT_TRUE(m_scene.reader().acquire(false));
    EXPECT_EQ(2u, m_scene.countOf("remove CAL +inf -> true"));
}

/// Each pass takes 10 ms, the guard and a poll of 5 each, and looks at its
/// middle; the last look is the first one after the deadline, which is 5 ms
/// before the end.
TEST_F(ReadWriteTimeouts, LooksAreCountedFromTheLocalClock)
{
    struct
    {
        long timeout;
        std::size_t looks;
    } const cases[] = {{1, 1}, {5, 1}, {9, 1}, {10, 2}, {19, 2}, {20, 3}, {29, 3}, {30, 4}, {1000, 101}};
    for (const auto& each : cases) {
        ReadWriteScene scene;
        fake_clock::setUniversalOffset(hours(5));
        scene.addWriter();
        EXPECT_FALSE(scene.reader().acquire(milliseconds(each.timeout), false));
        EXPECT_EQ(each.looks, scene.countOf("anyMatch W")) << each.timeout;
        EXPECT_EQ(2 * each.looks - 1, fake_clock::sleeps().size()) << each.timeout;
        scene.fs().clearLog();
        EXPECT_FALSE(scene.writer().acquire(milliseconds(each.timeout), false));
        EXPECT_EQ(each.looks, scene.countOf("walk W")) << each.timeout;
    }
}

TEST_F(ReadWriteTimeouts, ATryIsATimeoutOfZero)
{
    m_scene.addWriter(40);
    EXPECT_TRUE(m_scene.reader().tryAcquire(false));
    EXPECT_EQ(1u, m_scene.countOf("remove CAL -10000us"));
    EXPECT_TRUE(m_scene.reader().release());
    m_scene.addWriter(40);
    EXPECT_TRUE(m_scene.writer().tryAcquire(false));
    EXPECT_EQ(1u, m_scene.countOf("remove W -10000us"));
}

}  // namespace
