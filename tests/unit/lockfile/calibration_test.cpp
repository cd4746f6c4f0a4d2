#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include "platform/process.h"
#include "tests/support/failing_fs.h"
#include "tests/support/fake_clock.h"
#include "tests/support/recording_fs.h"

#include <boost/make_shared.hpp>

#include <gmock/gmock.h>

#include <set>

// The first question of a predicate compares the clocks by a file that it
// makes, looks at and removes.

namespace {

using namespace zorvel::test;
using boost::posix_time::microseconds;
using boost::posix_time::ptime;
using boost::posix_time::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

class Calibration : public testing::Test
{
protected:
    Calibration() : m_fs(boost::make_shared<RecordingFs>())
    {
        m_fs->addDirectory("D");
        m_fs->addFile("D/lock");
    }

    zvLockFileIsStale predicate(const char* directory = "D") const
    {
        return zvLockFileIsStale(zvPathString(directory), m_fs);
    }

    static ptime soon() { return fake_clock::now() + seconds(5); }

    static bool isCalibrationFile(const Operation& operation) { return operation.name.compare(0, 3, "D\\.") == 0; }

    /// The names of the calibration files that were asked for, in order.
    std::vector<std::string> namesTried() const
    {
        std::vector<std::string> names;
        for (const std::string& line : m_fs->log())
            if (line.compare(0, 7, "create ") == 0)
                names.push_back(line.substr(7, line.find(" -> ") - 7));
        return names;
    }

    /// Lets every creation of a calibration file answer false.
    void refuseCreation(std::size_t times)
    {
        m_fs->setScript([times](const Operation& operation) mutable -> boost::optional<bool> {
            if (operation.verb != "create" || times == 0)
                return boost::none;
            --times;
            return false;
        });
    }

    /// Lets one kind of operation on the calibration file throw, once.
    void throwOnce(const std::string& verb, Failure failure)
    {
        bool done = false;
        m_fs->setHook([=](const Operation& operation) mutable {
            if (done || operation.verb != verb || !isCalibrationFile(operation))
                return;
            done = true;
            throwFailure(failure);
        });
    }

    void expectFailureFor(const ptime& deadline, std::size_t attempts)
    {
        m_fs->clearLog();
        refuseCreation(100000);
        zvLockFileIsStale isStale = predicate();
        try {
            isStale("D/lock", 30, deadline);
            FAIL() << "calibrated without a file";
        } catch (const zvFileAccessError& error) {
            EXPECT_STREQ("File system error occurred:  Could not create unique file in D", error.what());
        }
        EXPECT_EQ(attempts, namesTried().size());
        EXPECT_EQ(attempts + 1, m_fs->log().size());
    }

    fake_clock::Scope m_clock;
    boost::shared_ptr<RecordingFs> m_fs;
};

TEST_F(Calibration, ConstructionTouchesNothing)
{
    predicate();
    EXPECT_THAT(m_fs->log(), IsEmpty());
}

TEST_F(Calibration, IsMadeByTheFirstQuestionOnlyInThisOrder)
{
    zvLockFileIsStale isStale = predicate();
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
    ASSERT_EQ(5u, m_fs->log().size());
    const std::string file = namesTried().at(0);
    EXPECT_THAT(m_fs->log(), ElementsAre("isDirectory D -> true", "create " + file + " -> true",
                                         StartsWith("mtime " + file + " -> "), "remove " + file + " +5000000us -> true",
                                         StartsWith("mtime D/lock -> ")));
    EXPECT_THAT(m_fs->files(), ElementsAre("D/lock"));
    m_fs->clearLog();
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
    EXPECT_THAT(m_fs->log(), ElementsAre(StartsWith("mtime D/lock -> ")));
}

TEST_F(Calibration, TheFileIsNamedByTimeProcessCounterAndAddress)
{
    zvLockFileIsStale isStale = predicate();
    isStale("D/lock", 30, soon());
    // 9:26:53.589793 in microseconds.
    const std::string expected = "D\\.34013589793" + std::to_string(zorvel::platform::processId());
    const std::string name = namesTried().at(0);
    ASSERT_THAT(name, StartsWith(expected));
    const std::string rest = name.substr(expected.size());
    EXPECT_GE(rest.size(), 2u);
    EXPECT_EQ(std::string::npos, rest.find_first_not_of("0123456789")) << rest;
}

TEST_F(Calibration, NoTwoFilesOfOneMicrosecondHaveOneName)
{
    for (int i = 0; i < 20; ++i) {
        zvLockFileIsStale isStale = predicate();
        isStale("D/lock", 30, soon());
    }
    const std::vector<std::string> names = namesTried();
    EXPECT_EQ(20u, std::set<std::string>(names.begin(), names.end()).size());
}

TEST_F(Calibration, TheDirectoryIsNormalised)
{
    m_fs->addDirectory("D\\sub");
    m_fs->addFile("D/sub/lock");
    zvLockFileIsStale isStale = predicate(" D//sub ");
    isStale("D/sub/lock", 30, soon());
    EXPECT_EQ("isDirectory D\\sub -> true", m_fs->log().at(0));
    EXPECT_THAT(namesTried().at(0), StartsWith("D\\sub\\.34013589793"));
}

TEST_F(Calibration, ATrailingSeparatorIsNotDoubled)
{
    m_fs->addDirectory("D\\");
    zvLockFileIsStale isStale = predicate("D\\");
    isStale("D/lock", 30, soon());
    EXPECT_THAT(namesTried().at(0), StartsWith("D\\.34013589793"));
}

TEST_F(Calibration, AMissingDirectoryIsThrownAndAskedForAgain)
{
    zvLockFileIsStale isStale = predicate("E/sub");
    for (int i = 0; i < 2; ++i) {
        m_fs->clearLog();
        try {
            isStale("D/lock", 30, soon());
            FAIL() << "calibrated in a missing directory";
        } catch (const zvNoSuchDirectory& error) {
            EXPECT_STREQ("Tried to obtain a lock on a non-existent directory: E\\sub", error.what());
        }
        EXPECT_THAT(m_fs->log(), ElementsAre("isDirectory E\\sub -> false"));
    }
    m_fs->addDirectory("E\\sub");
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
}

TEST_F(Calibration, ADeadlineThatHasComeAllowsOneAttempt)
{
    expectFailureFor(fake_clock::now(), 1);
    expectFailureFor(fake_clock::now() - seconds(10), 1);
    expectFailureFor(ptime(boost::posix_time::neg_infin), 1);
    expectFailureFor(ptime(boost::posix_time::not_a_date_time), 1);
}

TEST_F(Calibration, ADeadlineThatHasComeIsEnoughForAFreeName)
{
    zvLockFileIsStale isStale = predicate();
    EXPECT_FALSE(isStale("D/lock", 30, fake_clock::now() - seconds(10)));
    EXPECT_EQ(1u, namesTried().size());
    EXPECT_THAT(m_fs->files(), ElementsAre("D/lock"));
}

TEST_F(Calibration, AtMost1001AttemptsAreMade)
{
    expectFailureFor(soon(), 1001);
    const std::vector<std::string> names = namesTried();
    EXPECT_EQ(1001u, std::set<std::string>(names.begin(), names.end()).size());
    expectFailureFor(ptime(boost::posix_time::pos_infin), 1001);
}

TEST_F(Calibration, The1001stAttemptMaySucceed)
{
    refuseCreation(1000);
    zvLockFileIsStale isStale = predicate();
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
    EXPECT_EQ(1001u, namesTried().size());
}

TEST_F(Calibration, TheDeadlineIsMetByTheTimeBeforeTheAttempt)
{
    // The first attempt begins before the deadline and fails after it; a
    // second one is made, and it is the last.
    m_fs->setHook([](const Operation& operation) {
        if (operation.verb == "create")
            fake_clock::advance(seconds(3));
    });
    refuseCreation(100);
    zvLockFileIsStale isStale = predicate();
    EXPECT_THROW(isStale("D/lock", 30, fake_clock::now() + seconds(2)), zvFileAccessError);
    EXPECT_EQ(2u, namesTried().size());
}

TEST_F(Calibration, CountsFromTheTimeOfTheAttemptThatSucceeded)
{
    m_fs->setHook([](const Operation& operation) {
        if (operation.verb == "create" && operation.number <= 3)
            fake_clock::advance(seconds(7));
    });
    refuseCreation(2);
    zvLockFileIsStale isStale = predicate();
    // Attempts at 0 s, 7 s, and 14 s: the file is stamped as of 14 s.
    EXPECT_FALSE(isStale("D/lock", 30, fake_clock::now() + seconds(60)));
    m_fs->addFile("D/lock");
    fake_clock::set(fake_clock::start() + seconds(44));
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
    fake_clock::set(fake_clock::start() + seconds(44) + microseconds(1));
    EXPECT_TRUE(isStale("D/lock", 30, soon()));
}

TEST_F(Calibration, CountsFromTheTimeBeforeASlowCreation)
{
    m_fs->setHook([](const Operation& operation) {
        if (operation.verb == "create")
            fake_clock::advance(seconds(10));
    });
    zvLockFileIsStale isStale = predicate();
    isStale("D/lock", 30, soon());
    // What the server stamped at 10 s counts as 0 s.
    m_fs->addFile("D/lock");
    fake_clock::set(fake_clock::start() + seconds(30));
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
    fake_clock::set(fake_clock::start() + seconds(30) + microseconds(1));
    EXPECT_TRUE(isStale("D/lock", 30, soon()));
}

template <class Error>
void expectThrown(zvLockFileIsStale& isStale, const ptime& deadline)
{
    EXPECT_THROW(isStale("D/lock", 30, deadline), Error);
}

TEST_F(Calibration, AnExceptionOfTheCreationLeavesAndTheNextQuestionMeasuresAgain)
{
    zvLockFileIsStale isStale = predicate();
    throwOnce("create", Failure::permissionDenied);
    expectThrown<zvPermissionDenied>(isStale, soon());
    throwOnce("create", Failure::noSuchDirectory);
    expectThrown<zvNoSuchDirectory>(isStale, soon());
    throwOnce("create", Failure::fileAccessError);
    expectThrown<zvFileAccessError>(isStale, soon());
    EXPECT_EQ(6u, m_fs->log().size());
    m_fs->clearLog();
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
    EXPECT_EQ(5u, m_fs->log().size());
}

TEST_F(Calibration, AnExceptionOfTheTimeLeavesAndTheFileIsRemoved)
{
    zvLockFileIsStale isStale = predicate();
    throwOnce("mtime", Failure::fileAccessError);
    expectThrown<zvFileAccessError>(isStale, soon());
    EXPECT_THAT(m_fs->files(), ElementsAre("D/lock"));
    EXPECT_EQ("remove " + namesTried().at(0) + " +5000000us -> true", m_fs->log().back());
    throwOnce("mtime", Failure::fileNotFound);
    expectThrown<zvFileNotFoundError>(isStale, soon());
    EXPECT_THAT(m_fs->files(), ElementsAre("D/lock"));
    m_fs->clearLog();
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
    EXPECT_EQ(5u, m_fs->log().size());
}

TEST_F(Calibration, AFailedRemovalDoesNotUndoIt)
{
    for (const Failure failure : {Failure::permissionDenied, Failure::noSuchDirectory, Failure::fileAccessError}) {
        zvLockFileIsStale isStale = predicate();
        throwOnce("remove", failure);
        EXPECT_FALSE(isStale("D/lock", 30, soon()));
        m_fs->setHook(nullptr);
        m_fs->clearLog();
        EXPECT_FALSE(isStale("D/lock", 30, soon()));
        EXPECT_EQ(1u, m_fs->log().size());
    }
}

TEST_F(Calibration, ARemovalThatAnswersFalseDoesNotUndoIt)
{
    zvLockFileIsStale isStale = predicate();
    m_fs->setScript([](const Operation& operation) {
        return operation.verb == "remove" ? boost::optional<bool>(false) : boost::optional<bool>();
    });
    EXPECT_FALSE(isStale("D/lock", 30, soon()));
}

TEST_F(Calibration, CopiesMadeBeforeItMeasureForThemselves)
{
    zvLockFileIsStale isStale = predicate();
    zvLockFileIsStale copy(isStale);
    isStale("D/lock", 30, soon());
    copy("D/lock", 30, soon());
    EXPECT_EQ(2u, namesTried().size());
}

TEST_F(Calibration, CopiesMadeAfterItShareIt)
{
    zvLockFileIsStale isStale = predicate();
    isStale("D/lock", 30, soon());
    zvLockFileIsStale copy(isStale);
    m_fs->clearLog();
    copy("D/lock", 30, soon());
    EXPECT_EQ(1u, m_fs->log().size());
}

TEST_F(Calibration, AnEmptyFileSystemIsRefused)
{
    const boost::shared_ptr<zvAbstractFS> none;
    EXPECT_THROW(zvLockFileIsStale(zvPathString("D"), none), zvFileAccessError);
}

}  // namespace
