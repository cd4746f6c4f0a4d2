#include <zorvel/errors.h>

#include "tests/support/fake_timer.h"
#include "tests/unit/dirlock/scenarios.h"

#include <gmock/gmock.h>

#include <typeinfo>

// The exact order of file operations in each branch of an acquire, and the
// sleeps between them.

namespace {

using namespace zorvel::test;
using testing::ElementsAre;
using testing::ElementsAreArray;

typedef std::vector<std::string> Lines;

class AcquireOrder : public testing::Test
{
protected:
    bool run(const char* name) { return scenario(name).run(m_scene); }

    /// What every acquire does from level 1 until it has asked for the first
    /// time whether level 0 is stale, with a deadline ten seconds away.
    Lines queueAndJudge() const
    {
        return {"exists #0 -> true",
                "exists #1 -> false",
                "create #1 -> true",
                "create #0 -> false",
                "isDirectory D -> true",
                "create CAL -> true",
                "mtime CAL",
                "remove CAL +9990000us -> true",
                "mtime #0"};
    }

    Lines after(Lines begin, const Lines& more) const
    {
        begin.insert(begin.end(), more.begin(), more.end());
        return begin;
    }

    void expectHeld(std::size_t sleeps)
    {
        EXPECT_TRUE(m_scene.lock().isAcquired());
        EXPECT_TRUE(m_scene.isTaken(0));
        EXPECT_EQ(1u, fake_timer::running());
        EXPECT_EQ(boost::posix_time::milliseconds(1000), fake_timer::lastInterval());
        EXPECT_EQ(std::vector<long>(sleeps, 5), fake_clock::sleeps());
    }

    void expectNotHeld(std::size_t sleeps)
    {
        EXPECT_FALSE(m_scene.lock().isAcquired());
        EXPECT_EQ(0u, fake_timer::running());
        EXPECT_EQ(std::vector<long>(sleeps, 5), fake_clock::sleeps());
    }

    Scene m_scene;
};

TEST_F(AcquireOrder, Free)
{
    EXPECT_TRUE(run("free"));
    EXPECT_THAT(m_scene.operations(), ElementsAre("exists #0 -> false", "create #0 -> true",
                                                  "refresh #0 +1000000us -> true", "exists #0 -> true"));
    expectHeld(1);
}

TEST_F(AcquireOrder, Taken)
{
    EXPECT_FALSE(run("taken"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAre("exists #0 -> true", "exists #1 -> false", "remove #-1 now -> false"));
    expectNotHeld(0);
    EXPECT_THAT(m_scene.fs().files(), ElementsAre("D/.deploy_lock.0"));
}

TEST_F(AcquireOrder, QueuedThenFreed)
{
    EXPECT_TRUE(run("queued then freed"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAreArray(after(queueAndJudge(), {"create #0 -> true", "remove #1 +9985000us -> true",
                                                         "refresh #0 +1000000us -> true", "exists #0 -> true"})));
    expectHeld(3);
    EXPECT_FALSE(m_scene.isTaken(1));
}

TEST_F(AcquireOrder, TwoLevelsDown)
{
    EXPECT_TRUE(run("two levels down"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAre("exists #0 -> true", "exists #1 -> true", "exists #2 -> false", "create #2 -> true",
                            "create #1 -> false", "isDirectory D -> true", "create CAL -> true", "mtime CAL",
                            "remove CAL +9990000us -> true", "mtime #1", "create #1 -> true",
                            "remove #2 +9985000us -> true", "create #0 -> false", "mtime #0", "create #0 -> true",
                            "remove #1 +9980000us -> true", "refresh #0 +1000000us -> true", "exists #0 -> true"));
    expectHeld(4);
    EXPECT_THAT(m_scene.fs().files(), ElementsAre("D/.deploy_lock.0"));
}

TEST_F(AcquireOrder, StaleTouched)
{
    EXPECT_TRUE(run("stale touched"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAreArray(
                    after(queueAndJudge(), {"refresh #0 +9990000us -> true", "remove #1 +9990000us -> true",
                                            "refresh #0 +1000000us -> true", "exists #0 -> true"})));
    expectHeld(2);
    EXPECT_FALSE(m_scene.isTaken(1));
    EXPECT_EQ(0, m_scene.fs().ageOf("D/.deploy_lock.0"));
}

TEST_F(AcquireOrder, StaleRemoved)
{
    EXPECT_TRUE(run("stale removed"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAreArray(
                    after(queueAndJudge(),
                          {"refresh #0 +9990000us -> false", "remove #0 +9990000us -> true", "create #0 -> true",
                           "remove #1 +9990000us -> true", "refresh #0 +1000000us -> true", "exists #0 -> true"})));
    expectHeld(2);
    EXPECT_FALSE(m_scene.isTaken(1));
}

TEST_F(AcquireOrder, StaleNotRemoved)
{
    EXPECT_TRUE(run("stale not removed"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAreArray(
                    after(queueAndJudge(),
                          {"refresh #0 +9990000us -> false", "remove #0 +9990000us -> false", "create #0 -> false",
                           "mtime #0", "refresh #0 +9990000us -> true", "remove #1 +9990000us -> true",
                           "refresh #0 +1000000us -> true", "exists #0 -> true"})));
    expectHeld(2);
}

TEST_F(AcquireOrder, OwnNotRemovedAfterCreation)
{
    EXPECT_TRUE(run("own not removed after creation"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAreArray(after(queueAndJudge(), {"create #0 -> true", "remove #1 +9985000us -> false",
                                                         "refresh #0 +1000000us -> true", "exists #0 -> true"})));
    expectHeld(3);
}

TEST_F(AcquireOrder, OwnNotRemovedAfterTakeover)
{
    EXPECT_TRUE(run("own not removed after takeover"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAreArray(
                    after(queueAndJudge(), {"refresh #0 +9990000us -> true", "remove #1 +9990000us -> false",
                                            "refresh #0 +1000000us -> true", "exists #0 -> true"})));
    expectHeld(2);
}

TEST_F(AcquireOrder, VanishedBeforeTheDeadline)
{
    EXPECT_TRUE(run("vanished before the deadline"));
    Lines expected = queueAndJudge();
    expected.back() = "mtime #0 -> file not found";
    EXPECT_THAT(m_scene.operations(),
                ElementsAreArray(after(expected, {"create #0 -> true", "remove #1 +9990000us -> true",
                                                  "refresh #0 +1000000us -> true", "exists #0 -> true"})));
    expectHeld(2);  // the next attempt follows at once
}

TEST_F(AcquireOrder, VanishedAtTheDeadline)
{
    EXPECT_FALSE(run("vanished at the deadline"));
    Lines expected = queueAndJudge();
    expected.back() = "mtime #0 -> file not found";
    EXPECT_THAT(m_scene.operations(), ElementsAreArray(after(expected, {"remove #1 now -> true"})));
    expectNotHeld(2);
    EXPECT_TRUE(m_scene.fs().files().empty());
}

TEST_F(AcquireOrder, FailedWhileQueued)
{
    try {
        run("failed while queued");
        FAIL() << "nothing thrown";
    } catch (const zvFileBasedLockError& error) {
        EXPECT_EQ(typeid(zvFileBasedLockError), typeid(error));
        EXPECT_STREQ("File system error occurred: boom", error.what());
    }
    EXPECT_THAT(m_scene.operations(),
                ElementsAreArray(after(queueAndJudge(), {"create #0 -> false", "mtime #0 -> file access error",
                                                         "remove #1 +9985000us -> true"})));
    expectNotHeld(3);
    EXPECT_THAT(m_scene.fs().files(), ElementsAre("D/.deploy_lock.0"));
}

TEST_F(AcquireOrder, NotValid)
{
    EXPECT_FALSE(run("not valid"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAre("exists #0 -> false", "create #0 -> true", "refresh #0 +1000000us -> true",
                            "exists #0 -> false", "remove #0 +1000000us -> true", "remove #0 +9995000us -> false"));
    expectNotHeld(1);
    EXPECT_TRUE(m_scene.fs().files().empty());
}

TEST_F(AcquireOrder, TimedOut)
{
    EXPECT_FALSE(run("timed out"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAre("exists #0 -> true", "exists #1 -> false", "create #1 -> true", "create #0 -> false",
                            "isDirectory D -> true", "create CAL -> true", "mtime CAL", "remove CAL +10000us -> true",
                            "mtime #0", "create #0 -> false", "mtime #0", "create #0 -> false", "mtime #0",
                            "remove #1 now -> true"));
    expectNotHeld(4);
    EXPECT_THAT(m_scene.fs().files(), ElementsAre("D/.deploy_lock.0"));
}

TEST_F(AcquireOrder, RaceLost)
{
    EXPECT_TRUE(run("race lost"));
    EXPECT_THAT(m_scene.operations(),
                ElementsAre("exists #0 -> false", "create #0 -> false", "exists #1 -> false", "create #1 -> true",
                            "create #0 -> true", "remove #1 +9985000us -> true", "refresh #0 +1000000us -> true",
                            "exists #0 -> true"));
    expectHeld(3);
}

TEST_F(AcquireOrder, ClocksAreComparedOncePerLock)
{
    EXPECT_TRUE(run("queued then freed"));
    EXPECT_TRUE(m_scene.lock().release());
    m_scene.take(0, 40);
    m_scene.fs().clearLog();
    EXPECT_TRUE(m_scene.lock().acquire(boost::posix_time::seconds(10), false));
    EXPECT_EQ(0u, m_scene.countOf("create CAL"));
    EXPECT_EQ(1u, m_scene.countOf("mtime #0"));
}

}  // namespace
