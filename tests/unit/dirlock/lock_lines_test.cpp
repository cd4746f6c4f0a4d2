#include <zorvel/errors.h>

#include "tests/support/child.h"
#include "tests/unit/dirlock/scenarios.h"

#include <gtest/gtest.h>

// The log lines of each branch of an acquire, to the letter. The switches are
// read when the program is loaded, so each case is a process of its own.

namespace {

using namespace zorvel::test;

/// Acquires and releases; nothing is written but by the library.
int runScenario(const std::vector<std::string>& arguments)
{
    Scene scene;
    try {
        if (scenario(arguments.at(0)).run(scene))
            scene.lock().release();
    } catch (const zvFileBasedLockError&) {
    }
    return 0;
}
const ChildMode scenarioMode("scenario", &runScenario);

const char queuing[] = "Queuing for lock acquire in directory D\n";
const char exists0[] = "Lock file exists at level 0.  Going to next level...\n";
const char create0[] =
    "No lock found at level 0.  Sleeping for one polling cycle...\nAttempting to create queue file...\n";
const char create1[] =
    "No lock found at level 1.  Sleeping for one polling cycle...\nAttempting to create queue file...\n";
const char created0[] = "queue file created at level 0\n";
const char created1[] = "queue file created at level 1\n";
const char trying0[] = "L: Trying to acquire level 0\n";
const char judging0[] = "L: Could not acquire; trying to detect stale lock at level 0\n";
const char sleeping[] = "L: Sleeping\n";
const char success1[] = "L: Success! removing level 1\n";
const char detected[] = "FS_LOCK: stale lock detected: D/.deploy_lock.0\n";
const char removing[] = "FS_LOCK: removing stale lock D/.deploy_lock.0\n";
const char removed[] = "FS_LOCK: removed stale lock D/.deploy_lock.0\n";

std::string notRemoved(int level, int tag)
{
    return "FS_LOCK: failed to remove D/.deploy_lock." + std::to_string(level) + "(" + std::to_string(tag) + ")\n";
}

class LockLines : public testing::Test
{
protected:
    static ChildResult run(const char* name, const std::vector<std::string>& switches)
    {
        ProcessOptions options;
        options.unset = {"ZORVEL_FSLOCK_VERBOSE", "ZORVEL_FSLOCK_WARNING", "ZORVEL_FSLOCK_STALE_LOG"};
        for (const std::string& each : switches)
            options.set.emplace_back("ZORVEL_FSLOCK_" + each, "1");
        const ChildResult result = runChild("scenario", {name}, options);
        EXPECT_EQ(0, result.status);
        return result;
    }

    /// Runs a scenario with every combination that tells the logs apart.
    static void expect(const char* name, const std::string& verbose, const std::string& stale,
                       const std::string& warning, const std::string& verboseAndStale)
    {
        expectWith(name, {}, "", "");
        expectWith(name, {"WARNING"}, "", warning);
        expectWith(name, {"STALE_LOG"}, stale, "");
        expectWith(name, {"VERBOSE"}, verbose, warning);
        expectWith(name, {"VERBOSE", "STALE_LOG"}, verboseAndStale, warning);
    }

    /// A scenario without a stale file.
    static void expect(const char* name, const std::string& verbose, const std::string& warning)
    {
        expect(name, verbose, "", warning, verbose);
    }

private:
    static void expectWith(const char* name, const std::vector<std::string>& switches, const std::string& output,
                           const std::string& errors)
    {
        const ChildResult result = run(name, switches);
        EXPECT_EQ(output, result.output) << testing::PrintToString(switches);
        EXPECT_EQ(errors, result.errors) << testing::PrintToString(switches);
    }
};

const std::string queuedAt1 = std::string(queuing) + exists0 + create1 + created1;
const std::string judged = std::string(trying0) + judging0;
const std::string taken0 = std::string(trying0) + success1;

TEST_F(LockLines, Free)
{
    expect("free", std::string(queuing) + create0 + created0, "");
}

TEST_F(LockLines, Taken)
{
    expect("taken", std::string(queuing) + exists0, notRemoved(-1, 380));
}

TEST_F(LockLines, QueuedThenFreed)
{
    expect("queued then freed", queuedAt1 + judged + sleeping + taken0, "");
}

TEST_F(LockLines, TwoLevelsDown)
{
    expect("two levels down",
           std::string(queuing) + exists0 +
               "Lock file exists at level 1.  Going to next level...\n"
               "No lock found at level 2.  Sleeping for one polling cycle...\n"
               "Attempting to create queue file...\n"
               "queue file created at level 2\n"
               "L: Trying to acquire level 1\n"
               "L: Could not acquire; trying to detect stale lock at level 1\n"
               "L: Sleeping\n"
               "L: Trying to acquire level 1\n"
               "L: Success! removing level 2\n" +
               judged + sleeping + taken0,
           "");
}

TEST_F(LockLines, StaleTouched)
{
    const std::string verbose = queuedAt1 + judged;
    expect("stale touched", verbose, detected, "", verbose + detected);
}

TEST_F(LockLines, StaleRemoved)
{
    const std::string verbose = queuedAt1 + judged;
    const std::string stale = std::string(detected) + removing + removed;
    expect("stale removed", verbose + taken0, stale, "", verbose + stale + taken0);
}

TEST_F(LockLines, StaleNotRemoved)
{
    const std::string first = std::string(detected) + removing;
    expect("stale not removed", queuedAt1 + judged + judged, first + detected, notRemoved(1, 334),
           queuedAt1 + judged + first + judged + detected);
}

TEST_F(LockLines, OwnNotRemovedAfterCreation)
{
    expect("own not removed after creation", queuedAt1 + judged + sleeping + taken0, notRemoved(1, 310));
}

TEST_F(LockLines, OwnNotRemovedAfterTakeover)
{
    const std::string verbose = queuedAt1 + judged;
    expect("own not removed after takeover", verbose, detected, notRemoved(1, 343), verbose + detected);
}

TEST_F(LockLines, VanishedBeforeTheDeadline)
{
    expect("vanished before the deadline", queuedAt1 + judged + taken0, "");
}

TEST_F(LockLines, VanishedAtTheDeadline)
{
    expect("vanished at the deadline", queuedAt1 + judged, "");
}

TEST_F(LockLines, FailedWhileQueued)
{
    expect("failed while queued", queuedAt1 + judged + sleeping + judged, "");
}

TEST_F(LockLines, NotValid)
{
    expect("not valid", std::string(queuing) + create0 + created0, notRemoved(0, 380));
}

TEST_F(LockLines, TimedOut)
{
    expect("timed out", queuedAt1 + judged + sleeping + judged + sleeping + judged, "");
}

TEST_F(LockLines, TimedOutAndNotRemoved)
{
    expect("timed out and not removed", queuedAt1 + judged + sleeping + judged + sleeping + judged, notRemoved(1, 380));
}

TEST_F(LockLines, RaceLost)
{
    expect("race lost", std::string(queuing) + create0 + create1 + created1 + taken0, "");
}

}  // namespace
