#include "tests/unit/dirlock/read_write_order.h"

// The exact order of file operations in each branch of a reader's acquire, and
// the sleeps between them.

namespace {

using namespace zorvel::test;

const Lines noWriter = {"anyMatch W -> false"};
const Lines writer = {"anyMatch W -> true"};

/// The reader's file, made and held.
Lines marked(const std::string& file = "own1")
{
    return {"create " + file + " -> true", "refresh " + file + " +1000000us -> true", "exists " + file + " -> true"};
}

class ReadAcquireOrder : public ReadWriteOrder
{
protected:
    /// With a refresh every second, and no other timer left.
    void expectHeld(const Lines& files)
    {
        EXPECT_TRUE(m_scene.reader().isAcquired());
        expectFiles(files);
        EXPECT_EQ(1u, fake_timer::running());
        EXPECT_EQ(boost::posix_time::milliseconds(1000), fake_timer::lastInterval());
        EXPECT_TRUE(fake_timer::lastRepeats());
    }

    void expectNotHeld(const Lines& files)
    {
        EXPECT_FALSE(m_scene.reader().isAcquired());
        expectFiles(files);
        EXPECT_EQ(0u, fake_timer::running());
    }
};

TEST_F(ReadAcquireOrder, Free)
{
    EXPECT_TRUE(run("reader: free"));
    expectOperations({guardTaken(), noWriter, marked(), guardGivenBack()});
    expectSleeps(1);
    expectHeld({"own1"});
}

TEST_F(ReadAcquireOrder, AmongReadersNobodyLooksAtThem)
{
    EXPECT_TRUE(run("reader: among readers"));
    expectOperations({guardTaken(), noWriter, marked(), guardGivenBack()});
    expectHeld({"own1", "R1", "R2"});
}

TEST_F(ReadAcquireOrder, UnrefreshedOnlyTheGuardHasATimer)
{
    EXPECT_TRUE(run("reader: unrefreshed"));
    expectOperations({guardTaken(), noWriter, marked(), guardGivenBack()});
    EXPECT_TRUE(m_scene.reader().isAcquired());
    EXPECT_EQ(1u, fake_timer::set());
    EXPECT_EQ(0u, fake_timer::running());
}

TEST_F(ReadAcquireOrder, FreshWriter)
{
    EXPECT_FALSE(run("reader: fresh writer"));
    expectOperations({guardTaken(), writer, clocksCompared("-10000us"), {"mtime W"}, guardGivenBack()});
    expectSleeps(1);
    expectNotHeld({"W"});
}

TEST_F(ReadAcquireOrder, StaleWriter)
{
    EXPECT_TRUE(run("reader: stale writer"));
    expectOperations({guardTaken(),
                      writer,
                      clocksCompared("-10000us"),
                      {"mtime W", "remove W +1000000us -> true"},
                      marked(),
                      guardGivenBack()});
    expectSleeps(1);
    expectHeld({"own1"});
}

TEST_F(ReadAcquireOrder, AStaleWriterThatCannotBeRemovedIsPassed)
{
    EXPECT_TRUE(run("reader: stale writer not removed"));
    expectOperations({guardTaken(),
                      writer,
                      clocksCompared("-10000us"),
                      {"mtime W", "remove W +1000000us -> false"},
                      marked(),
                      guardGivenBack()});
    expectHeld({"own1", "W"});
}

TEST_F(ReadAcquireOrder, WriterLeft)
{
    EXPECT_TRUE(run("reader: writer left"));
    expectOperations({guardTaken(),
                      writer,
                      clocksCompared("+9990000us"),
                      {"mtime W"},
                      guardGivenBack(),
                      guardTaken(),
                      writer,
                      {"mtime W"},
                      guardGivenBack(),
                      guardTaken(),
                      noWriter,
                      marked(),
                      guardGivenBack()});
    expectSleeps(5);
    expectHeld({"own1"});
}

/// The deadline is 5 ms before the end of the 20 that were asked for, and a
/// pass at the deadline is not the last one.
TEST_F(ReadAcquireOrder, TimedOut)
{
    EXPECT_FALSE(run("reader: timed out"));
    expectOperations({guardTaken(),
                      writer,
                      clocksCompared("+10000us"),
                      {"mtime W"},
                      guardGivenBack(),
                      guardTaken(),
                      writer,
                      {"mtime W"},
                      guardGivenBack(),
                      guardTaken(),
                      writer,
                      {"mtime W"},
                      guardGivenBack()});
    expectSleeps(5);
    expectNotHeld({"W"});
}

TEST_F(ReadAcquireOrder, AWriterThatVanishesIsWaitedForOnceMore)
{
    EXPECT_TRUE(run("reader: writer vanished"));
    expectOperations({guardTaken(),
                      writer,
                      clocksCompared("+9990000us"),
                      {"mtime W -> file not found"},
                      guardGivenBack(),
                      guardTaken(),
                      noWriter,
                      marked(),
                      guardGivenBack()});
    expectSleeps(3);
    expectHeld({"own1"});
}

TEST_F(ReadAcquireOrder, AWriterThatVanishesAtTheDeadline)
{
    EXPECT_FALSE(run("reader: writer vanished at the deadline"));
    expectOperations(
        {guardTaken(), writer, clocksCompared("-10000us"), {"mtime W -> file not found"}, guardGivenBack()});
    expectSleeps(1);
    expectNotHeld({});
}

TEST_F(ReadAcquireOrder, WithoutTheGuardItGoesOnAllTheSame)
{
    EXPECT_TRUE(run("reader: no guard"));
    expectOperations({guardNotTaken(), noWriter, marked()});
    expectSleeps(0);
    expectHeld({"own1", "#0"});
}

TEST_F(ReadAcquireOrder, WithoutTheGuardItStillSeesTheWriter)
{
    EXPECT_FALSE(run("reader: no guard, fresh writer"));
    expectOperations({guardNotTaken(), writer, clocksCompared("-5000us"), {"mtime W"}});
    expectSleeps(0);
    expectNotHeld({"#0", "W"});
}

TEST_F(ReadAcquireOrder, AGuardIsWaitedForUntilTheDeadline)
{
    EXPECT_TRUE(run("reader: guard waited for in vain"));
    expectOperations({guardWaitedForInVain(), noWriter, marked()});
    expectSleeps(4);
    expectHeld({"own1", "#0"});
}

TEST_F(ReadAcquireOrder, GuardFreed)
{
    EXPECT_TRUE(run("reader: guard freed"));
    expectOperations({guardTakenWhenFreed(), noWriter, marked(), guardGivenBack()});
    expectSleeps(3);
    expectHeld({"own1"});
}

TEST_F(ReadAcquireOrder, StaleGuard)
{
    EXPECT_TRUE(run("reader: stale guard"));
    expectOperations({guardTakenOver(), noWriter, marked(), guardGivenBack()});
    expectSleeps(2);
    expectHeld({"own1"});
}

TEST_F(ReadAcquireOrder, AGuardThatIsNotValidIsDoneWithout)
{
    EXPECT_TRUE(run("reader: guard not valid"));
    expectOperations({{"exists #0 -> false", "create #0 -> true", "refresh #0 +1000000us -> true", "exists #0 -> false",
                       "remove #0 +1000000us -> true", "remove #0 +9990000us -> false"},
                      noWriter,
                      marked()});
    expectSleeps(1);
    expectHeld({"own1"});
}

TEST_F(ReadAcquireOrder, NotValid)
{
    EXPECT_FALSE(run("reader: not valid"));
    expectOperations({guardTaken(),
                      noWriter,
                      {"create own1 -> true", "refresh own1 +1000000us -> true", "exists own1 -> false",
                       "remove own1 +1000000us -> true"},
                      guardGivenBack()});
    expectSleeps(1);
    expectNotHeld({});
}

TEST_F(ReadAcquireOrder, NumbersThatOthersHaveAreStepped)
{
    EXPECT_TRUE(run("reader: collisions"));
    expectOperations(
        {guardTaken(), noWriter, {"create own1 -> false", "create own2 -> false"}, marked("own3"), guardGivenBack()});
    expectSleeps(1);
    expectHeld({"own3"});
}

TEST_F(ReadAcquireOrder, ClocksAreComparedOncePerLock)
{
    EXPECT_TRUE(run("reader: stale writer"));
    EXPECT_TRUE(m_scene.reader().release());
    m_scene.addWriter(40);
    m_scene.fs().clearLog();
    EXPECT_TRUE(m_scene.reader().tryAcquire(false));
    EXPECT_EQ(0u, m_scene.countOf("create CAL"));
    EXPECT_EQ(1u, m_scene.countOf("mtime W"));
}

TEST_F(ReadAcquireOrder, ThePauseIsTakenUnderTheGuard)
{
    std::vector<std::size_t> sleepsBeforeRelease;
    m_scene.before("remove #0", 0, [&] { sleepsBeforeRelease.push_back(fake_clock::sleeps().size()); });
    EXPECT_FALSE(run("reader: timed out"));
    EXPECT_EQ((std::vector<std::size_t>{2, 4, 5}), sleepsBeforeRelease);
}

TEST_F(ReadAcquireOrder, AReleaseRemovesTheFileWithoutAGuard)
{
    ASSERT_TRUE(run("reader: free"));
    m_scene.fs().clearLog();
    EXPECT_TRUE(m_scene.reader().release());
    expectOperations({{"remove own1 +1000000us -> true"}});
    expectNotHeld({});
    m_scene.fs().clearLog();
    EXPECT_FALSE(m_scene.reader().release());
    expectOperations({});
}

TEST_F(ReadAcquireOrder, AHeldOneIsNotAcquiredAgain)
{
    ASSERT_TRUE(run("reader: free"));
    m_scene.fs().clearLog();
    EXPECT_FALSE(m_scene.reader().tryAcquire(false));
    EXPECT_FALSE(m_scene.reader().acquire(true));
    EXPECT_FALSE(m_scene.reader().acquire(boost::posix_time::seconds(10), false));
    expectOperations({});
    expectSleeps(1);
    expectHeld({"own1"});
    EXPECT_TRUE(m_scene.reader().release());
    EXPECT_FALSE(m_scene.reader().release());
}

}  // namespace
