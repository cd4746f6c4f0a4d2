#include <zorvel/lockfile.h>

#include "tests/support/child.h"
#include "tests/support/fake_clock.h"
#include "tests/support/seam_faults.h"
#include "tests/support/system_facts.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <iomanip>
#include <sstream>

// The switches are read when the program is loaded, so each case is a process
// of its own.

namespace {

using namespace zorvel::test;

const char verboseSwitch[] = "ZORVEL_FSLOCK_VERBOSE";
const char warningSwitch[] = "ZORVEL_FSLOCK_WARNING";
const char staleSwitch[] = "ZORVEL_FSLOCK_STALE_LOG";

/// Refreshes a file, then fails to.
int refreshAndFail(const std::vector<std::string>& arguments)
{
    if (arguments.size() > 1)
        for (const char* name : {verboseSwitch, warningSwitch, staleSwitch})
            setEnvironment(name, arguments[1]);
    const boost::shared_ptr<zvAbstractFS> fs = zvGetDefaultFSImp();
    const bool done = fs->refreshLockFile(arguments.at(0));
    seam_faults::failAlways(seam_faults::openFile, EIO);
    const bool failed = !fs->refreshLockFile(arguments.at(0));
    return done && failed ? 0 : 1;
}
const ChildMode refreshAndFailMode("refresh-and-fail", &refreshAndFail);

class LockLogs : public testing::Test
{
protected:
    /// Runs the child with exactly these switches set, to "" or "1".
    ChildResult run(const std::vector<std::pair<std::string, std::string>>& switches,
                    const std::vector<std::string>& more = {})
    {
        ProcessOptions options;
        options.unset = {verboseSwitch, warningSwitch, staleSwitch};
        options.set = switches;
        std::vector<std::string> arguments{m_name};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ChildResult result = runChild("refresh-and-fail", arguments, options);
        EXPECT_EQ(0, result.status);
        return result;
    }

    TemporaryTree m_tree;
    const std::string m_name = m_tree.root() + "/file";
    const std::string m_verbose = "Touching lock file...\nLock successfully refreshed\nTouching lock file...\n";
    const std::string m_warning = "FS_LOCK: failed to refresh lock file: " + m_name + "\n";
};

TEST_F(LockLogs, WithoutASwitchNothingIsWritten)
{
    const ChildResult result = run({});
    EXPECT_EQ("", result.output);
    EXPECT_EQ("", result.errors);
}

TEST_F(LockLogs, VerboseSwitchesTheWarningsOnToo)
{
    const ChildResult result = run({{verboseSwitch, "1"}});
    EXPECT_EQ(m_verbose, result.output);
    EXPECT_EQ(m_warning, result.errors);
}

TEST_F(LockLogs, WarningsAlone)
{
    const ChildResult result = run({{warningSwitch, "1"}});
    EXPECT_EQ("", result.output);
    EXPECT_EQ(m_warning, result.errors);
}

TEST_F(LockLogs, StaleAloneSaysNothingOfARefresh)
{
    const ChildResult result = run({{staleSwitch, "1"}});
    EXPECT_EQ("", result.output);
    EXPECT_EQ("", result.errors);
}

TEST_F(LockLogs, AllOfThem)
{
    const ChildResult result = run({{verboseSwitch, "1"}, {warningSwitch, "1"}, {staleSwitch, "1"}});
    EXPECT_EQ(m_verbose, result.output);
    EXPECT_EQ(m_warning, result.errors);
}

TEST_F(LockLogs, WarningsAndStale)
{
    const ChildResult result = run({{warningSwitch, "1"}, {staleSwitch, "1"}});
    EXPECT_EQ("", result.output);
    EXPECT_EQ(m_warning, result.errors);
}

TEST_F(LockLogs, AnEmptyValueSwitchesALogOn)
{
    EXPECT_EQ(m_warning, run({{warningSwitch, ""}}).errors);
    const ChildResult result = run({{verboseSwitch, ""}});
    EXPECT_EQ(m_verbose, result.output);
    EXPECT_EQ(m_warning, result.errors);
}

TEST_F(LockLogs, NoValueSwitchesALogOff)
{
    for (const char* value : {"0", "off", "false"})
        EXPECT_EQ(m_warning, run({{warningSwitch, value}}).errors);
}

TEST_F(LockLogs, ASwitchSetAfterTheLoadChangesNothing)
{
    const ChildResult result = run({}, {"1"});
    EXPECT_EQ("", result.output);
    EXPECT_EQ("", result.errors);
}

/// Counts how often it is written to a stream.
struct Counted
{
    int* times;
};

std::ostream& operator<<(std::ostream& out, const Counted& value)
{
    ++*value.times;
    return out << "counted";
}

TEST(Logger, SwitchedOnWritesEverything)
{
    std::ostringstream out;
    zvLogger log(true, out);
    const std::string text = "text";
    log << "level " << 7 << ' ' << text << std::endl << std::hex << std::setw(4) << 255 << std::endl;
    EXPECT_EQ("level 7 text\n  ff\n", out.str());
}

TEST(Logger, SwitchedOffNeitherWritesNorFormats)
{
    std::ostringstream out;
    zvLogger log(false, out);
    int times = 0;
    log << "level " << Counted{&times} << std::endl;
    EXPECT_EQ("", out.str());
    EXPECT_EQ(0, times);
}

TEST(Logger, GivesItselfBack)
{
    std::ostringstream out;
    zvLogger log(true, out);
    EXPECT_EQ(&log, &(log << 1));
    EXPECT_EQ(&log, &(log << std::endl));
}

TEST(Logger, LeavesTheStreamsErrorsToTheStream)
{
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    zvLogger log(true, out);
    EXPECT_NO_THROW(log << "text" << std::endl);
    EXPECT_TRUE(out.bad());
}

TEST(Logger, ACopyWritesToTheSameStream)
{
    std::ostringstream out;
    zvLogger log(true, out);
    zvLogger copy(log);
    copy << "text";
    EXPECT_EQ("text", out.str());
}

}  // namespace
