#include <zorvel/errors.h>

#include "tests/support/child.h"
#include "tests/unit/dirlock/read_write_scenarios.h"

#include <gtest/gtest.h>

// Readers and writers write no log lines of their own; those of their guard
// begin with an empty label. The switches are read when the program is loaded,
// so each case is a process of its own.

namespace {

using namespace zorvel::test;

/// Acquires and ends the hold; nothing is written but by the library. Without
/// a name: every scenario.
int runScenarios(const std::vector<std::string>& names)
{
    for (const std::string& name : names.empty() ? readWriteScenarios() : names) {
        ReadWriteScene scene;
        readWriteScenario(name).run(scene);
        scene.writer().downgrade().release();
        scene.writer().release();
        scene.reader().release();
    }
    return 0;
}
const ChildMode scenariosMode("read-write-scenarios", &runScenarios);

const std::string queuing = "Queuing for lock acquire in directory D\n";
const std::string exists0 = "Lock file exists at level 0.  Going to next level...\n";
const std::string create0 =
    "No lock found at level 0.  Sleeping for one polling cycle...\nAttempting to create queue file...\n";
const std::string create1 =
    "No lock found at level 1.  Sleeping for one polling cycle...\nAttempting to create queue file...\n";
const std::string free = queuing + create0 + "queue file created at level 0\n";
const std::string taken = queuing + exists0;
const std::string queuedAt1 = queuing + exists0 + create1 + "queue file created at level 1\n";
const std::string trying0 = ": Trying to acquire level 0\n";
const std::string judged = trying0 + ": Could not acquire; trying to detect stale lock at level 0\n";
const std::string sleeping = ": Sleeping\n";
const std::string freed = queuedAt1 + judged + sleeping + trying0 + ": Success! removing level 1\n";
const std::string inVain = queuedAt1 + judged + sleeping + judged + sleeping + judged;
const std::string detected = "FS_LOCK: stale lock detected: D/.deploy_lock.0\n";
const std::string noQueue = "FS_LOCK: failed to remove D/.deploy_lock.-1(380)\n";

class ReadWriteLines : public testing::Test
{
protected:
    static ChildResult run(const std::vector<std::string>& names, const std::vector<std::string>& switches)
    {
        ProcessOptions options;
        options.unset = {"ZORVEL_FSLOCK_VERBOSE", "ZORVEL_FSLOCK_WARNING", "ZORVEL_FSLOCK_STALE_LOG"};
        for (const std::string& each : switches)
            options.set.emplace_back("ZORVEL_FSLOCK_" + each, "1");
        const ChildResult result = runChild("read-write-scenarios", names, options);
        EXPECT_EQ(0, result.status) << testing::PrintToString(names);
        return result;
    }

    /// The same for a reader and a writer.
    static void expectOfBoth(const std::string& branch, const std::string& verbose, const std::string& warning = "")
    {
        for (const char* side : {"reader: ", "writer: "}) {
            const ChildResult result = run({side + branch}, {"VERBOSE"});
            EXPECT_EQ(verbose, result.output) << side << branch;
            EXPECT_EQ(warning, result.errors) << side << branch;
        }
    }
};

TEST_F(ReadWriteLines, Free)
{
    expectOfBoth("free", free);
}

TEST_F(ReadWriteLines, FreshWriter)
{
    expectOfBoth("fresh writer", free);
}

TEST_F(ReadWriteLines, StaleWriter)
{
    expectOfBoth("stale writer", free);
}

TEST_F(ReadWriteLines, TimedOut)
{
    expectOfBoth("timed out", free + free + free);
}

TEST_F(ReadWriteLines, NotValid)
{
    expectOfBoth("not valid", free);
}

TEST_F(ReadWriteLines, NoGuard)
{
    expectOfBoth("no guard", taken, noQueue);
}

TEST_F(ReadWriteLines, GuardFreed)
{
    expectOfBoth("guard freed", freed);
}

TEST_F(ReadWriteLines, GuardWaitedForInVain)
{
    expectOfBoth("guard waited for in vain", inVain);
}

TEST_F(ReadWriteLines, StaleGuard)
{
    expectOfBoth("stale guard", queuedAt1 + judged);
    for (const char* name : {"reader: stale guard", "writer: stale guard"}) {
        const ChildResult result = run({name}, {"STALE_LOG"});
        EXPECT_EQ(detected, result.output) << name;
        EXPECT_EQ("", result.errors) << name;
    }
}

TEST_F(ReadWriteLines, SwitchedOffNothingIsWritten)
{
    const ChildResult result = run({}, {});
    EXPECT_EQ("", result.output);
    EXPECT_EQ("", result.errors);
}

/// Stale files of readers and writers are cleared without a word; only the
/// guards', a reader's and a writer's, have a line.
TEST_F(ReadWriteLines, TheStaleLogHasTheGuardsOnly)
{
    const ChildResult result = run({}, {"STALE_LOG"});
    EXPECT_EQ(detected + detected, result.output);
    EXPECT_EQ("", result.errors);
}

}  // namespace
