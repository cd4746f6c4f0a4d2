#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include "tests/support/failing_fs.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_timer.h"
#include "tests/support/recording_fs.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <boost/thread/exceptions.hpp>

#include <gmock/gmock.h>

#include <memory>
#include <type_traits>

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using boost::posix_time::time_duration;
using testing::ElementsAre;
using testing::IsEmpty;

class LockFile : public testing::Test
{
protected:
    LockFile() : m_recording(boost::make_shared<RecordingFs>()), m_fs(m_recording)
    {
        fake_timer::reset();
        m_recording->addDirectory("D");
    }

    std::unique_ptr<zvLockFile> make(const time_duration& interval)
    {
        return std::unique_ptr<zvLockFile>(new zvLockFile("D/lock", interval, m_fs));
    }

    std::unique_ptr<zvLockFile> makeUnrefreshed()
    {
        return std::unique_ptr<zvLockFile>(new zvLockFile("D/lock", zvLockFile::NO_REFRESH, m_fs));
    }

    void failEverything(Failure failure) { failByPlan(*m_recording, FailurePlan(1, Persistence::forEver, failure)); }

    fake_clock::Scope m_clock;
    boost::shared_ptr<RecordingFs> m_recording;
    boost::shared_ptr<zvAbstractFS> m_fs;
};

TEST_F(LockFile, WithoutRefreshTouchesTheFileOnce)
{
    const auto file = makeUnrefreshed();
    EXPECT_THAT(m_recording->log(), ElementsAre("refresh D/lock +1000000us -> true"));
    EXPECT_EQ(0u, fake_timer::set());
    EXPECT_TRUE(file->getRefreshInterval().is_pos_infinity());
    EXPECT_EQ("D/lock", file->getName());
    EXPECT_TRUE(m_recording->has("D/lock"));
}

TEST_F(LockFile, WithAnIntervalTouchesTheFileAndSetsATimer)
{
    const auto file = make(milliseconds(1000));
    EXPECT_THAT(m_recording->log(), ElementsAre("refresh D/lock +1000000us -> true"));
    EXPECT_EQ(1u, fake_timer::set());
    EXPECT_EQ(milliseconds(1000), fake_timer::lastInterval());
    EXPECT_TRUE(fake_timer::lastRepeats());
    EXPECT_EQ(milliseconds(1000), file->getRefreshInterval());
    EXPECT_EQ("D/lock", file->getName());
}

TEST_F(LockFile, EachRefreshMayTakeASecond)
{
    const auto file = make(seconds(1));
    m_recording->clearLog();
    fake_clock::advance(seconds(1));
    fake_timer::fire();
    fake_clock::advance(seconds(7));
    fake_timer::fire();
    EXPECT_THAT(m_recording->log(),
                ElementsAre("refresh D/lock +1000000us -> true", "refresh D/lock +1000000us -> true"));
    EXPECT_EQ(0, m_recording->ageOf("D/lock"));
}

TEST_F(LockFile, DestructionEndsTheRefreshThenRemovesTheFile)
{
    auto file = make(seconds(1));
    m_recording->clearLog();
    std::size_t runningAtRemoval = 99;
    m_recording->setHook([&](const Operation&) { runningAtRemoval = fake_timer::running(); });
    file.reset();
    EXPECT_EQ(0u, runningAtRemoval);
    EXPECT_THAT(m_recording->log(), ElementsAre("remove D/lock +1000000us -> true"));
    EXPECT_THAT(m_recording->files(), IsEmpty());
    fake_timer::fire();
    EXPECT_THAT(m_recording->files(), IsEmpty());
}

TEST_F(LockFile, DestructionWithoutRefreshRemovesTheFile)
{
    makeUnrefreshed().reset();
    EXPECT_THAT(m_recording->log(),
                ElementsAre("refresh D/lock +1000000us -> true", "remove D/lock +1000000us -> true"));
}

TEST_F(LockFile, SpecialIntervalsAreKeptAndDoNotRefresh)
{
    EXPECT_TRUE(make(boost::posix_time::not_a_date_time)->getRefreshInterval().is_not_a_date_time());
    EXPECT_TRUE(make(boost::posix_time::pos_infin)->getRefreshInterval().is_pos_infinity());
    EXPECT_TRUE(make(boost::posix_time::neg_infin)->getRefreshInterval().is_neg_infinity());
    EXPECT_EQ(0u, fake_timer::set());
    EXPECT_EQ("refresh D/lock +1000000us -> true", m_recording->log().at(0));
}

TEST_F(LockFile, ZeroAndNegativeIntervalsAreOrdinaryOnes)
{
    const auto zero = make(seconds(0));
    EXPECT_EQ(seconds(0), fake_timer::lastInterval());
    const auto negative = make(seconds(-3));
    EXPECT_EQ(seconds(-3), fake_timer::lastInterval());
    EXPECT_EQ(seconds(-3), negative->getRefreshInterval());
    EXPECT_EQ(2u, fake_timer::running());
}

TEST_F(LockFile, TheConversionAsksTheFileSystem)
{
    const auto file = makeUnrefreshed();
    m_recording->clearLog();
    EXPECT_TRUE(*file);
    m_recording->removeFileNow("D/lock");
    EXPECT_FALSE(*file);
    EXPECT_THAT(m_recording->log(), ElementsAre("exists D/lock -> true", "exists D/lock -> false"));
}

TEST_F(LockFile, TheConversionThrowsWhenTheDirectoryIsGone)
{
    const auto file = makeUnrefreshed();
    m_recording->removeFileNow("D/lock");
    m_recording->removeDirectory("D");
    EXPECT_THROW(static_cast<void>(static_cast<bool>(*file)), zvNoSuchDirectory);
}

TEST_F(LockFile, AFirstTouchThatTimesOutIsNoError)
{
    failEverything(Failure::answersFalse);
    const auto file = make(seconds(1));
    EXPECT_EQ(1u, fake_timer::running());
    EXPECT_FALSE(*file);
    EXPECT_NO_THROW(makeUnrefreshed());
}

TEST_F(LockFile, AnExceptionOfTheFirstTouchLeavesAndNothingIsMade)
{
    for (const Failure failure :
         {Failure::noSuchDirectory, Failure::permissionDenied, Failure::fileAccessError, Failure::fileNotFound}) {
        failEverything(failure);
        EXPECT_THROW(make(seconds(1)), zvFileBasedLockError);
        EXPECT_EQ(1u, m_recording->log().size());
        EXPECT_THROW(makeUnrefreshed(), zvFileBasedLockError);
        EXPECT_EQ(2u, m_recording->log().size());
    }
    EXPECT_EQ(0u, fake_timer::set());
}

TEST_F(LockFile, AMissingDirectoryIsThrownWithTheName)
{
    m_recording->removeDirectory("D");
    try {
        make(seconds(1));
        FAIL() << "made in a missing directory";
    } catch (const zvNoSuchDirectory& error) {
        EXPECT_STREQ("Tried to obtain a lock on a non-existent directory: D/lock", error.what());
    }
}

TEST_F(LockFile, ARefreshThatCannotBeStartedLeavesNoFile)
{
    fake_timer::failNext();
    EXPECT_THROW(make(seconds(1)), boost::thread_resource_error);
    EXPECT_THAT(m_recording->files(), IsEmpty());
}

TEST_F(LockFile, TheDestructorNeverThrows)
{
    for (const Failure failure : {Failure::answersFalse, Failure::noSuchDirectory, Failure::permissionDenied,
                                  Failure::fileAccessError, Failure::fileNotFound}) {
        m_recording->setScript(nullptr);
        auto file = make(seconds(1));
        failEverything(failure);
        EXPECT_NO_THROW(file.reset());
        EXPECT_EQ(1u, m_recording->log().size());
        EXPECT_EQ(0u, fake_timer::running());
    }
}

TEST_F(LockFile, TheDestructorDropsWhateverARemovalThrows)
{
    auto file = makeUnrefreshed();
    m_recording->setHook([](const Operation&) { throw 42; });
    EXPECT_NO_THROW(file.reset());
}

TEST_F(LockFile, ARefreshThatThrowsEndsTheRefreshingAndNothingElse)
{
    auto file = make(seconds(1));
    failEverything(Failure::permissionDenied);
    fake_timer::fire();
    EXPECT_EQ(0u, fake_timer::running());
    m_recording->setScript(nullptr);
    EXPECT_TRUE(*file);
    file.reset();
    EXPECT_THAT(m_recording->files(), IsEmpty());
}

TEST_F(LockFile, ARefreshThatTimesOutGoesOn)
{
    const auto file = make(seconds(1));
    failEverything(Failure::answersFalse);
    fake_timer::fire();
    EXPECT_EQ(1u, fake_timer::running());
}

TEST_F(LockFile, TheFirstCopyToGoEndsTheLockForBoth)
{
    auto file = make(seconds(1));
    std::unique_ptr<zvLockFile> copy(new zvLockFile(*file));
    EXPECT_EQ(1u, fake_timer::set());
    EXPECT_EQ("D/lock", copy->getName());
    EXPECT_EQ(seconds(1), copy->getRefreshInterval());
    copy.reset();
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_THAT(m_recording->files(), IsEmpty());
    EXPECT_FALSE(*file);
    m_recording->clearLog();
    file.reset();
    EXPECT_THAT(m_recording->log(), ElementsAre("remove D/lock +1000000us -> false"));
}

TEST_F(LockFile, AnEmptyNameIsTheFileSystemsBusiness)
{
    m_recording->addDirectory("");
    const zvLockFile file("", zvLockFile::NO_REFRESH, m_fs);
    EXPECT_EQ("", file.operator bool() ? "" : "missing");
    EXPECT_EQ("refresh  +1000000us -> true", m_recording->log().at(0));
}

TEST_F(LockFile, AnEmptyFileSystemIsRefused)
{
    const boost::shared_ptr<zvAbstractFS> none;
    EXPECT_THROW(zvLockFile("D/lock", zvLockFile::NO_REFRESH, none), zvFileAccessError);
    EXPECT_THROW(zvLockFile("D/lock", seconds(1), none), zvFileAccessError);
    EXPECT_EQ(0u, fake_timer::set());
}

TEST_F(LockFile, KeepsItsFileSystemAlive)
{
    auto file = makeUnrefreshed();
    const boost::weak_ptr<RecordingFs> watched = m_recording;
    m_fs.reset();
    m_recording.reset();
    EXPECT_FALSE(watched.expired());
    file.reset();
    EXPECT_TRUE(watched.expired());
}

}  // namespace
