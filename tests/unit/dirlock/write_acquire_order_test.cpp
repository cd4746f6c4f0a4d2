#include "tests/unit/dirlock/read_write_order.h"

// The exact order of file operations in each branch of a writer's acquire, and
// the sleeps between them.

namespace {

using namespace zorvel::test;

const Lines noReaders = {"walk R* 0 false -> 0"};
const Lines oneReader = {"walk R* 0 false -> 1"};
const Lines noWriter = {"walk W 0 false -> 0"};
const Lines writer = {"walk W 0 false -> 1"};
const Lines nobodyLeft = {"anyMatch R* -> false", "anyMatch W -> false"};
const Lines readersLeft = {"anyMatch R* -> true"};
const Lines writerLeft = {"anyMatch R* -> false", "anyMatch W -> true"};

/// The writer's file, which comes into being by its first refresh.
const Lines marked = {"refresh W +1000000us -> true", "exists W -> true"};

class WriteAcquireOrder : public ReadWriteOrder
{
protected:
    void expectHeld(const Lines& files)
    {
        EXPECT_TRUE(m_scene.writer().isAcquired());
        expectFiles(files);
        EXPECT_EQ(1u, fake_timer::running());
        EXPECT_EQ(boost::posix_time::milliseconds(1000), fake_timer::lastInterval());
        EXPECT_TRUE(fake_timer::lastRepeats());
    }

    void expectNotHeld(const Lines& files)
    {
        EXPECT_FALSE(m_scene.writer().isAcquired());
        expectFiles(files);
        EXPECT_EQ(0u, fake_timer::running());
    }
};

TEST_F(WriteAcquireOrder, Free)
{
    EXPECT_TRUE(run("writer: free"));
    expectOperations({guardTaken(), noReaders, noWriter, nobodyLeft, marked, guardGivenBack()});
    expectSleeps(1);
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, UnrefreshedOnlyTheGuardHasATimer)
{
    EXPECT_TRUE(run("writer: unrefreshed"));
    expectOperations({guardTaken(), noReaders, noWriter, nobodyLeft, marked, guardGivenBack()});
    EXPECT_TRUE(m_scene.writer().isAcquired());
    EXPECT_EQ(1u, fake_timer::set());
    EXPECT_EQ(0u, fake_timer::running());
}

TEST_F(WriteAcquireOrder, FreshReader)
{
    EXPECT_FALSE(run("writer: fresh reader"));
    expectOperations(
        {guardTaken(), oneReader, clocksCompared("-10000us"), {"mtime R1"}, noWriter, readersLeft, guardGivenBack()});
    expectSleeps(1);
    expectNotHeld({"R1"});
}

TEST_F(WriteAcquireOrder, FreshWriter)
{
    EXPECT_FALSE(run("writer: fresh writer"));
    expectOperations(
        {guardTaken(), noReaders, writer, clocksCompared("-10000us"), {"mtime W"}, writerLeft, guardGivenBack()});
    expectSleeps(1);
    expectNotHeld({"W"});
}

TEST_F(WriteAcquireOrder, FreshReaderAndWriter)
{
    EXPECT_FALSE(run("writer: fresh reader and writer"));
    expectOperations({guardTaken(),
                      oneReader,
                      clocksCompared("-10000us"),
                      {"mtime R1"},
                      writer,
                      {"mtime W"},
                      readersLeft,
                      guardGivenBack()});
    expectNotHeld({"R1", "W"});
}

TEST_F(WriteAcquireOrder, StaleReader)
{
    EXPECT_TRUE(run("writer: stale reader"));
    expectOperations({guardTaken(),
                      oneReader,
                      clocksCompared("-10000us"),
                      {"mtime R1", "remove R1 -10000us -> true"},
                      noWriter,
                      nobodyLeft,
                      marked,
                      guardGivenBack()});
    expectSleeps(1);
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, StaleWriter)
{
    EXPECT_TRUE(run("writer: stale writer"));
    expectOperations({guardTaken(),
                      noReaders,
                      writer,
                      clocksCompared("-10000us"),
                      {"mtime W", "remove W -10000us -> true"},
                      nobodyLeft,
                      marked,
                      guardGivenBack()});
    expectSleeps(1);
    expectHeld({"W"});
    EXPECT_EQ(0, m_scene.fs().ageOf(m_scene.nameOfWriter()));
}

TEST_F(WriteAcquireOrder, StaleReaderAndWriter)
{
    EXPECT_TRUE(run("writer: stale reader and writer"));
    expectOperations({guardTaken(),
                      oneReader,
                      clocksCompared("-10000us"),
                      {"mtime R1", "remove R1 -10000us -> true"},
                      writer,
                      {"mtime W", "remove W -10000us -> true"},
                      nobodyLeft,
                      marked,
                      guardGivenBack()});
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, OfSeveralReadersTheStaleOnesAreRemoved)
{
    EXPECT_FALSE(run("writer: stale and fresh readers"));
    expectOperations({guardTaken(),
                      {"walk R* 0 false -> 3"},
                      clocksCompared("-10000us"),
                      {"mtime R1", "remove R1 -10000us -> true", "mtime R2", "mtime R3", "remove R3 -10000us -> true"},
                      noWriter,
                      readersLeft,
                      guardGivenBack()});
    expectNotHeld({"R2"});
}

TEST_F(WriteAcquireOrder, AStaleReaderThatCannotBeRemovedIsThereStill)
{
    EXPECT_TRUE(run("writer: stale reader not removed"));
    expectOperations({guardTaken(),
                      oneReader,
                      clocksCompared("+9990000us"),
                      {"mtime R1", "remove R1 +9990000us -> false"},
                      noWriter,
                      readersLeft,
                      guardGivenBack(),
                      guardTaken(),
                      oneReader,
                      {"mtime R1", "remove R1 +9980000us -> true"},
                      noWriter,
                      nobodyLeft,
                      marked,
                      guardGivenBack()});
    expectSleeps(3);
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, AStaleWriterThatCannotBeRemovedIsThereStill)
{
    EXPECT_FALSE(run("writer: stale writer not removed"));
    expectOperations({guardTaken(),
                      noReaders,
                      writer,
                      clocksCompared("-10000us"),
                      {"mtime W", "remove W -10000us -> false"},
                      writerLeft,
                      guardGivenBack()});
    expectNotHeld({"W"});
}

TEST_F(WriteAcquireOrder, ReaderLeft)
{
    EXPECT_TRUE(run("writer: reader left"));
    expectOperations({guardTaken(),
                      oneReader,
                      clocksCompared("+9990000us"),
                      {"mtime R1"},
                      noWriter,
                      readersLeft,
                      guardGivenBack(),
                      guardTaken(),
                      oneReader,
                      {"mtime R1"},
                      noWriter,
                      readersLeft,
                      guardGivenBack(),
                      guardTaken(),
                      noReaders,
                      noWriter,
                      nobodyLeft,
                      marked,
                      guardGivenBack()});
    expectSleeps(5);
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, ReaderAndWriterLeft)
{
    EXPECT_TRUE(run("writer: reader and writer left"));
    expectOperations({guardTaken(), oneReader,        clocksCompared("+9990000us"),
                      {"mtime R1"}, writer,           {"mtime W"},
                      readersLeft,  guardGivenBack(), guardTaken(),
                      noReaders,    writer,           {"mtime W"},
                      writerLeft,   guardGivenBack(), guardTaken(),
                      noReaders,    noWriter,         nobodyLeft,
                      marked,       guardGivenBack()});
    expectSleeps(5);
    expectHeld({"W"});
}

/// As for a reader: the deadline is 5 ms early, and a pass at the deadline is
/// not the last one.
TEST_F(WriteAcquireOrder, TimedOut)
{
    EXPECT_FALSE(run("writer: timed out"));
    expectOperations({guardTaken(),
                      oneReader,
                      clocksCompared("+10000us"),
                      {"mtime R1"},
                      noWriter,
                      readersLeft,
                      guardGivenBack(),
                      guardTaken(),
                      oneReader,
                      {"mtime R1"},
                      noWriter,
                      readersLeft,
                      guardGivenBack(),
                      guardTaken(),
                      oneReader,
                      {"mtime R1"},
                      noWriter,
                      readersLeft,
                      guardGivenBack()});
    expectSleeps(5);
    expectNotHeld({"R1"});
}

TEST_F(WriteAcquireOrder, AReaderThatVanishesIsGone)
{
    EXPECT_TRUE(run("writer: reader vanished"));
    expectOperations({guardTaken(),
                      oneReader,
                      clocksCompared("-10000us"),
                      {"mtime R1 -> file not found"},
                      noWriter,
                      nobodyLeft,
                      marked,
                      guardGivenBack()});
    expectSleeps(1);
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, AWriterThatVanishesIsGone)
{
    EXPECT_TRUE(run("writer: writer vanished"));
    expectOperations({guardTaken(),
                      noReaders,
                      writer,
                      clocksCompared("-10000us"),
                      {"mtime W -> file not found"},
                      nobodyLeft,
                      marked,
                      guardGivenBack()});
    expectHeld({"W"});
}

/// One that goes on without its guard.
TEST_F(WriteAcquireOrder, AReaderThatComesDuringTheWalkIsSeen)
{
    EXPECT_TRUE(run("writer: reader came during the walk"));
    expectOperations({guardTaken(), noReaders, noWriter, readersLeft, guardGivenBack(), guardTaken(), noReaders,
                      noWriter, nobodyLeft, marked, guardGivenBack()});
    expectSleeps(3);
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, WithoutTheGuardItGoesOnAllTheSame)
{
    EXPECT_TRUE(run("writer: no guard"));
    expectOperations({guardNotTaken(), noReaders, noWriter, nobodyLeft, marked});
    expectSleeps(0);
    expectHeld({"W", "#0"});
}

TEST_F(WriteAcquireOrder, WithoutTheGuardItStillSeesTheReader)
{
    EXPECT_FALSE(run("writer: no guard, fresh reader"));
    expectOperations({guardNotTaken(), oneReader, clocksCompared("-5000us"), {"mtime R1"}, noWriter, readersLeft});
    expectSleeps(0);
    expectNotHeld({"#0", "R1"});
}

TEST_F(WriteAcquireOrder, AGuardIsWaitedForUntilTheDeadline)
{
    EXPECT_TRUE(run("writer: guard waited for in vain"));
    expectOperations({guardWaitedForInVain(), noReaders, noWriter, nobodyLeft, marked});
    expectSleeps(4);
    expectHeld({"W", "#0"});
}

TEST_F(WriteAcquireOrder, GuardFreed)
{
    EXPECT_TRUE(run("writer: guard freed"));
    expectOperations({guardTakenWhenFreed(), noReaders, noWriter, nobodyLeft, marked, guardGivenBack()});
    expectSleeps(3);
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, StaleGuard)
{
    EXPECT_TRUE(run("writer: stale guard"));
    expectOperations({guardTakenOver(), noReaders, noWriter, nobodyLeft, marked, guardGivenBack()});
    expectSleeps(2);
    expectHeld({"W"});
}

TEST_F(WriteAcquireOrder, NotValid)
{
    EXPECT_FALSE(run("writer: not valid"));
    expectOperations({guardTaken(),
                      noReaders,
                      noWriter,
                      nobodyLeft,
                      {"refresh W +1000000us -> true", "exists W -> false", "remove W +1000000us -> true"},
                      guardGivenBack()});
    expectSleeps(1);
    expectNotHeld({});
}

TEST_F(WriteAcquireOrder, ClocksAreComparedOncePerLock)
{
    EXPECT_TRUE(run("writer: stale reader"));
    EXPECT_TRUE(m_scene.writer().release());
    m_scene.addReader(1, 40);
    m_scene.addWriter(40);
    m_scene.fs().clearLog();
    EXPECT_TRUE(m_scene.writer().tryAcquire(false));
    EXPECT_EQ(0u, m_scene.countOf("create CAL"));
    EXPECT_EQ(1u, m_scene.countOf("mtime R1"));
    EXPECT_EQ(1u, m_scene.countOf("mtime W"));
}

TEST_F(WriteAcquireOrder, ThePauseIsTakenUnderTheGuard)
{
    std::vector<std::size_t> sleepsBeforeRelease;
    m_scene.before("remove #0", 0, [&] { sleepsBeforeRelease.push_back(fake_clock::sleeps().size()); });
    EXPECT_FALSE(run("writer: timed out"));
    EXPECT_EQ((std::vector<std::size_t>{2, 4, 5}), sleepsBeforeRelease);
}

/// Directories of such names are in the way, but nobody's lock.
TEST_F(WriteAcquireOrder, DirectoriesAreNotJudged)
{
    m_scene.fs().addDirectory(m_scene.nameOfReader(1));
    m_scene.fs().addDirectory(m_scene.nameOfWriter());
    EXPECT_FALSE(m_scene.writer().tryAcquire(false));
    expectOperations({guardTaken(), oneReader, writer, readersLeft, guardGivenBack()});
}

TEST_F(WriteAcquireOrder, AReleaseRemovesTheFileWithoutAGuard)
{
    ASSERT_TRUE(run("writer: free"));
    m_scene.fs().clearLog();
    EXPECT_TRUE(m_scene.writer().release());
    expectOperations({{"remove W +1000000us -> true"}});
    expectNotHeld({});
    m_scene.fs().clearLog();
    EXPECT_FALSE(m_scene.writer().release());
    expectOperations({});
}

TEST_F(WriteAcquireOrder, AHeldOneIsNotAcquiredAgain)
{
    ASSERT_TRUE(run("writer: free"));
    m_scene.fs().clearLog();
    EXPECT_FALSE(m_scene.writer().tryAcquire(false));
    EXPECT_FALSE(m_scene.writer().acquire(true));
    EXPECT_FALSE(m_scene.writer().acquire(boost::posix_time::seconds(10), false));
    expectOperations({});
    expectSleeps(1);
    expectHeld({"W"});
    EXPECT_TRUE(m_scene.writer().release());
    EXPECT_FALSE(m_scene.writer().release());
}

}  // namespace
