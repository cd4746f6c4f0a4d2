#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include "tests/support/fake_clock.h"
#include "tests/support/recording_fs.h"

#include <gmock/gmock.h>

namespace {

using namespace zorvel::test;
using boost::posix_time::hours;
using boost::posix_time::milliseconds;
using boost::posix_time::time_duration;
using testing::ElementsAre;

class AbstractFs : public testing::Test
{
protected:
    AbstractFs() { m_recording.addDirectory("D"); }

    std::string deadlineOfRemoval(const time_duration& timeout)
    {
        m_recording.clearLog();
        m_fs.removeFile("D/x", timeout);
        return m_recording.log().at(0);
    }

    std::string deadlineOfRefresh(const time_duration& timeout)
    {
        m_recording.clearLog();
        m_fs.refreshLockFile("D/x", timeout);
        return m_recording.log().at(0);
    }

    fake_clock::Scope m_clock;
    RecordingFs m_recording;
    zvAbstractFS& m_fs = m_recording;
};

TEST_F(AbstractFs, WithoutADurationASecondIsAllowed)
{
    m_recording.addFile("D/x");
    EXPECT_TRUE(m_fs.removeFile("D/x"));
    EXPECT_FALSE(m_fs.removeFile("D/x"));
    EXPECT_TRUE(m_fs.refreshLockFile("D/x"));
    EXPECT_THAT(m_recording.log(), ElementsAre("remove D/x +1000000us -> true", "remove D/x +1000000us -> false",
                                               "refresh D/x +1000000us -> true"));
}

TEST_F(AbstractFs, ADurationIsCountedFromNow)
{
    EXPECT_EQ("remove D/x +2500000us -> false", deadlineOfRemoval(milliseconds(2500)));
    EXPECT_EQ("remove D/x now -> false", deadlineOfRemoval(time_duration(0, 0, 0)));
    EXPECT_EQ("remove D/x -1000us -> false", deadlineOfRemoval(milliseconds(-1)));
    EXPECT_EQ("refresh D/x +2500000us -> true", deadlineOfRefresh(milliseconds(2500)));
    EXPECT_EQ("refresh D/x now -> true", deadlineOfRefresh(time_duration(0, 0, 0)));
    EXPECT_EQ("refresh D/x -1000us -> true", deadlineOfRefresh(milliseconds(-1)));
}

TEST_F(AbstractFs, ASpecialDurationGivesTheSpecialDeadline)
{
    EXPECT_EQ("remove D/x +inf -> false", deadlineOfRemoval(boost::posix_time::pos_infin));
    EXPECT_EQ("remove D/x -inf -> false", deadlineOfRemoval(boost::posix_time::neg_infin));
    EXPECT_EQ("remove D/x nadt -> false", deadlineOfRemoval(boost::posix_time::not_a_date_time));
    EXPECT_EQ("refresh D/x +inf -> true", deadlineOfRefresh(boost::posix_time::pos_infin));
    EXPECT_EQ("refresh D/x -inf -> true", deadlineOfRefresh(boost::posix_time::neg_infin));
    EXPECT_EQ("refresh D/x nadt -> true", deadlineOfRefresh(boost::posix_time::not_a_date_time));
}

TEST_F(AbstractFs, AHugeDurationDoesNotOverflow)
{
    const time_duration huge = hours(24 * 365) * 200000;
    EXPECT_EQ("remove D/x +inf -> false", deadlineOfRemoval(huge));
    EXPECT_EQ("remove D/x -inf -> false", deadlineOfRemoval(-huge));
    EXPECT_EQ("refresh D/x +inf -> true", deadlineOfRefresh(huge));
    EXPECT_EQ("refresh D/x -inf -> true", deadlineOfRefresh(-huge));
}

TEST_F(AbstractFs, TheDeadlineIsOnTheLocalClock)
{
    fake_clock::setUniversalOffset(hours(-9));
    EXPECT_EQ("remove D/x +1000us -> false", deadlineOfRemoval(milliseconds(1)));
}

TEST_F(AbstractFs, ExceptionsPass)
{
    EXPECT_THROW(m_fs.refreshLockFile("E/x"), zvNoSuchDirectory);
}

}  // namespace
