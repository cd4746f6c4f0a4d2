#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include "tests/support/failing_fs.h"
#include "tests/support/fake_clock.h"
#include "tests/support/recording_fs.h"

#include <boost/make_shared.hpp>

#include <gmock/gmock.h>

#include <limits>

namespace {

using namespace zorvel::test;
using boost::posix_time::hours;
using boost::posix_time::microseconds;
using boost::posix_time::milliseconds;
using boost::posix_time::ptime;
using boost::posix_time::seconds;
using boost::posix_time::time_duration;

class Staleness : public testing::Test
{
protected:
    Staleness() : m_fs(boost::make_shared<RecordingFs>()), m_isStale(zvPathString("D"), m_fs)
    {
        m_fs->addDirectory("D");
        m_fs->addFile("D/lock");
    }

    bool isStale(long timeoutSec) { return m_isStale("D/lock", timeoutSec, fake_clock::now() + seconds(5)); }

    fake_clock::Scope m_clock;
    boost::shared_ptr<RecordingFs> m_fs;
    zvLockFileIsStale m_isStale;
};

TEST_F(Staleness, BeginsOneMicrosecondAfterTheTimeout)
{
    EXPECT_FALSE(isStale(30));
    fake_clock::set(fake_clock::start() + seconds(30) - microseconds(1));
    EXPECT_FALSE(isStale(30));
    fake_clock::set(fake_clock::start() + seconds(30));
    EXPECT_FALSE(isStale(30));
    fake_clock::set(fake_clock::start() + seconds(30) + microseconds(1));
    EXPECT_TRUE(isStale(30));
}

TEST_F(Staleness, ATimeoutOfZeroIsExactToo)
{
    EXPECT_FALSE(isStale(0));
    fake_clock::advance(microseconds(1));
    EXPECT_TRUE(isStale(0));
}

TEST_F(Staleness, ATimeoutMayBeNegative)
{
    EXPECT_TRUE(isStale(-1));
    m_fs->addFile("D/lock", -2);
    EXPECT_FALSE(isStale(-1));
}

TEST_F(Staleness, AnyTimeoutIsTaken)
{
    EXPECT_FALSE(isStale(std::numeric_limits<long>::max()));
    EXPECT_TRUE(isStale(std::numeric_limits<long>::min()));
}

TEST_F(Staleness, TheClockIsReadBeforeTheTimeOfTheFile)
{
    isStale(30);
    fake_clock::set(fake_clock::start() + seconds(30));
    m_fs->setHook([](const Operation&) { fake_clock::advance(seconds(1)); });
    EXPECT_FALSE(isStale(30));
    EXPECT_TRUE(isStale(30));
}

TEST_F(Staleness, EndsWithARefresh)
{
    isStale(30);
    fake_clock::advance(seconds(100));
    EXPECT_TRUE(isStale(30));
    m_fs->addFile("D/lock");
    EXPECT_FALSE(isStale(30));
}

TEST_F(Staleness, ADeadlineThatHasComeMattersNotAfterTheFirstQuestion)
{
    isStale(30);
    EXPECT_FALSE(m_isStale("D/lock", 30, ptime(boost::posix_time::neg_infin)));
    EXPECT_FALSE(m_isStale("D/lock", 30, fake_clock::now() - seconds(5)));
}

TEST_F(Staleness, AMissingFileIsThrownBeforeAndAfterTheComparisonOfClocks)
{
    m_fs->removeFileNow("D/lock");
    for (int i = 0; i < 2; ++i) {
        try {
            isStale(30);
            FAIL() << "judged a missing file";
        } catch (const zvFileNotFoundError& error) {
            EXPECT_STREQ("File not found: D/lock", error.what());
        }
    }
    m_fs->addFile("D/lock");
    m_fs->clearLog();
    EXPECT_FALSE(isStale(30));
    EXPECT_EQ(1u, m_fs->log().size());
}

TEST_F(Staleness, OtherFailuresOfTheTimePass)
{
    isStale(30);
    failByPlan(*m_fs, FailurePlan(1, Persistence::once, Failure::fileAccessError));
    EXPECT_THROW(isStale(30), zvFileAccessError);
    EXPECT_FALSE(isStale(30));
}

TEST_F(Staleness, TheDifferenceOfFileTimesIsCutTo32Bits)
{
    isStale(30);
    // 2^32 s after the calibration counts as the same second.
    m_fs->addFile("D/lock", -4294967296LL);
    fake_clock::set(fake_clock::start() + seconds(30));
    EXPECT_FALSE(isStale(30));
    fake_clock::advance(microseconds(1));
    m_fs->addFile("D/lock", 30 - 4294967296LL);
    EXPECT_TRUE(isStale(30));
    // 2^31 s after it counts as 2^31 s before it.
    m_fs->addFile("D/lock", 30 - 2147483648LL);
    EXPECT_TRUE(isStale(30));
    m_fs->addFile("D/lock", 30 - 2147483647LL);
    EXPECT_FALSE(isStale(30));
}

TEST_F(Staleness, AFileOf1970IsStale)
{
    isStale(30);
    m_fs->addFile("D/lock", m_fs->ageOf("D/lock") + 1900000000);
    EXPECT_TRUE(isStale(30));
}

TEST_F(Staleness, TheUniversalClockPlaysNoPart)
{
    isStale(30);
    fake_clock::setUniversalOffset(hours(-9));
    fake_clock::set(fake_clock::start() + seconds(30));
    EXPECT_FALSE(isStale(30));
}

/// The server's clock minus the local one.
class StalenessByAServer : public Staleness, public testing::WithParamInterface<time_duration>
{
protected:
    StalenessByAServer()
    {
        fake_clock::setUniversalOffset(hours(5));
        m_fs->setServerOffset(GetParam());
        m_fs->addFile("D/lock");
    }
};

TEST_P(StalenessByAServer, IsJudgedByTheLocalClock)
{
    EXPECT_FALSE(isStale(30));
    fake_clock::advance(seconds(10));
    EXPECT_FALSE(isStale(30));
    fake_clock::advance(seconds(19));
    EXPECT_FALSE(isStale(30));
    fake_clock::advance(seconds(3));  // whole seconds of file times: one more or less
    EXPECT_TRUE(isStale(30));
}

TEST_P(StalenessByAServer, HoldsForFilesOfBeforeTheComparison)
{
    m_fs->addFile("D/lock", 10);
    EXPECT_FALSE(isStale(30));
    m_fs->addFile("D/lock", 40);
    EXPECT_TRUE(isStale(30));
}

TEST_P(StalenessByAServer, HoldsAtAnyPartOfTheSecond)
{
    for (int part = 0; part < 10; ++part) {
        fake_clock::set(fake_clock::start() + milliseconds(100 * part));
        m_fs->addFile("D/lock");
        zvLockFileIsStale fresh(zvPathString("D"), m_fs);
        fake_clock::advance(milliseconds(370));
        EXPECT_FALSE(fresh("D/lock", 30, fake_clock::now()));
        fake_clock::advance(seconds(28));
        EXPECT_FALSE(fresh("D/lock", 30, fake_clock::now()));
        fake_clock::advance(seconds(3));
        EXPECT_TRUE(fresh("D/lock", 30, fake_clock::now()));
    }
}

INSTANTIATE_TEST_SUITE_P(AheadAndBehind, StalenessByAServer,
                         testing::Values(seconds(0), milliseconds(500), milliseconds(-500), seconds(120), seconds(-120),
                                         seconds(3600), seconds(-3600)));

}  // namespace
