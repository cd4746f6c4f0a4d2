#include <zorvel/errors.h>

#include "tests/unit/dirlock/read_write_order.h"

// A writer becomes a reader: the reader's file is there before the writer's
// goes.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;

const Lines turned = {"create own1 -> true", "refresh own1 +1000000us -> true", "remove W +1000000us -> true"};

class Downgrade : public ReadWriteOrder
{
protected:
    void hold(bool skipRefresh = false)
    {
        ASSERT_TRUE(m_writer.tryAcquire(skipRefresh));
        m_scene.fs().clearLog();
    }

    /// The writer holds on, as if nothing had been asked.
    void expectStillWriting()
    {
        EXPECT_TRUE(m_writer.isAcquired());
        EXPECT_EQ(1u, fake_timer::running());
        expectFiles({"W"});
        EXPECT_TRUE(m_writer.release());
        expectFiles({});
    }

    zvDirectoryReadWriteLock::WriteLock& m_writer = m_scene.writer();
};

TEST_F(Downgrade, MakesTheReadersFileFirst)
{
    hold();
    ReadLock reader = m_writer.downgrade();
    expectOperations({turned});
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_FALSE(m_writer.isAcquired());
    expectFiles({"own1"});
    expectSleeps(1);  // of the acquire
}

TEST_F(Downgrade, IsTheSameWithAnyTimeout)
{
    for (int kind = 0; kind < 3; ++kind) {
        ReadWriteScene scene;
        ASSERT_TRUE(scene.writer().tryAcquire(false));
        scene.fs().clearLog();
        const ReadLock reader = kind == 0   ? scene.writer().tryDowngrade()
                                : kind == 1 ? scene.writer().downgrade(seconds(10))
                                            : scene.writer().downgrade();
        EXPECT_TRUE(reader.isAcquired());
        EXPECT_THAT(scene.operations(), testing::ElementsAreArray(turned));
    }
}

TEST_F(Downgrade, TheDirectoryIsMarkedAllTheTime)
{
    hold();
    bool writerThere = false;
    bool readerThere = false;
    m_scene.before("refresh own1", 1, [&] { writerThere = m_scene.fs().has(m_scene.nameOfWriter()); });
    m_scene.before("remove W", 1, [&] { readerThere = m_scene.fs().files().size() == 2; });
    const ReadLock reader = m_writer.downgrade();
    EXPECT_TRUE(writerThere);
    EXPECT_TRUE(readerThere);
}

TEST_F(Downgrade, KeepsTheRefresh)
{
    hold();
    const ReadLock reader = m_writer.downgrade();
    EXPECT_EQ(1u, fake_timer::running());
    EXPECT_EQ(boost::posix_time::milliseconds(1000), fake_timer::lastInterval());
    EXPECT_TRUE(fake_timer::lastRepeats());
    m_scene.fs().clearLog();
    fake_timer::fire();
    EXPECT_THAT(m_scene.operations(), ElementsAre("refresh own1 +1000000us -> true"));
}

TEST_F(Downgrade, KeepsThatThereIsNoRefresh)
{
    hold(true);
    const std::size_t timers = fake_timer::set();
    const ReadLock reader = m_writer.downgrade();
    expectOperations({turned});
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_EQ(timers, fake_timer::set());
    EXPECT_EQ(0u, fake_timer::running());
}

TEST_F(Downgrade, TheResultIsAnOrdinaryReader)
{
    hold();
    ReadLock reader = m_writer.downgrade();
    EXPECT_FALSE(reader.tryAcquire(false));
    m_scene.fs().clearLog();
    EXPECT_TRUE(reader.release());
    EXPECT_THAT(m_scene.operations(), ElementsAre("remove own1 +1000000us -> true"));
    EXPECT_FALSE(reader.isAcquired());
    EXPECT_FALSE(reader.release());
    EXPECT_EQ(0u, fake_timer::running());
    expectFiles({});
    EXPECT_TRUE(reader.tryAcquire(false));
    expectFiles({"own2"});
    EXPECT_TRUE(reader.release());
    expectFiles({});
}

TEST_F(Downgrade, TheResultOutlivesTheWriter)
{
    ReadLock reader = m_scene.both().getReadLock();
    {
        zvDirectoryReadWriteLock::WriteLock writer = m_scene.both().getWriteLock();
        ASSERT_TRUE(writer.tryAcquire(false));
        reader = writer.downgrade();
    }
    EXPECT_TRUE(reader.isAcquired());
    expectFiles({"own1"});
}

TEST_F(Downgrade, ADroppedResultFreesTheDirectory)
{
    hold();
    m_writer.downgrade();
    EXPECT_FALSE(m_writer.isAcquired());
    expectFiles({});
    EXPECT_EQ(0u, fake_timer::running());
}

TEST_F(Downgrade, TheWriterMayBeAcquiredAgain)
{
    hold();
    ReadLock reader = m_writer.downgrade();
    EXPECT_FALSE(m_writer.release());
    EXPECT_FALSE(m_writer.tryAcquire(false));
    expectFiles({"own1"});
    EXPECT_TRUE(reader.release());
    EXPECT_TRUE(m_writer.tryAcquire(false));
    const ReadLock again = m_writer.downgrade();
    EXPECT_TRUE(again.isAcquired());
    expectFiles({"own2"});
}

TEST_F(Downgrade, ReadersComeInAndWritersDoNot)
{
    hold();
    EXPECT_FALSE(m_scene.reader().tryAcquire(false));
    ReadLock reader = m_writer.downgrade();
    EXPECT_TRUE(m_scene.reader().tryAcquire(false));
    zvDirectoryReadWriteLock::WriteLock other = m_scene.both().getWriteLock();
    EXPECT_FALSE(other.tryAcquire(false));
    EXPECT_TRUE(reader.release());
    EXPECT_FALSE(other.tryAcquire(false));
    EXPECT_TRUE(m_scene.reader().release());
    EXPECT_TRUE(other.tryAcquire(false));
}

TEST_F(Downgrade, OfWhatIsNotHeldTouchesNothing)
{
    EXPECT_FALSE(m_writer.downgrade().isAcquired());
    EXPECT_FALSE(m_writer.downgrade(seconds(10)).isAcquired());
    EXPECT_FALSE(m_writer.tryDowngrade().isAcquired());
    expectOperations({});
    expectSleeps(0);
}

TEST_F(Downgrade, ASecondOneTouchesNothing)
{
    hold();
    const ReadLock reader = m_writer.downgrade();
    m_scene.fs().clearLog();
    EXPECT_FALSE(m_writer.downgrade().isAcquired());
    expectOperations({});
    EXPECT_TRUE(reader.isAcquired());
}

TEST_F(Downgrade, AnUnheldResultMayBeAcquired)
{
    ReadLock reader = m_writer.tryDowngrade();
    EXPECT_TRUE(reader.tryAcquire(false));
    expectFiles({"own1"});
}

TEST_F(Downgrade, NumbersThatOthersHaveAreStepped)
{
    hold();
    m_scene.refuse("create own1");
    m_scene.refuse("create own2");
    const ReadLock reader = m_writer.downgrade();
    expectOperations({{"create own1 -> false", "create own2 -> false", "create own3 -> true",
                       "refresh own3 +1000000us -> true", "remove W +1000000us -> true"}});
    EXPECT_TRUE(reader.isAcquired());
}

TEST_F(Downgrade, AFirstRefreshThatTimesOutIsNoError)
{
    hold();
    m_scene.refuse("refresh own1");
    const ReadLock reader = m_writer.downgrade();
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_FALSE(m_writer.isAcquired());
}

TEST_F(Downgrade, AWritersFileThatCannotBeRemovedGoesStale)
{
    hold();
    m_scene.refuse("remove W", 1);
    const ReadLock reader = m_writer.downgrade();
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_FALSE(m_writer.isAcquired());
    expectFiles({"own1", "W"});
    EXPECT_EQ(1u, fake_timer::running());
}

TEST_F(Downgrade, AnErrorOfTheCreationLeavesTheWriterAsItWas)
{
    hold();
    m_scene.before("create own1", 1, [] { throw zvPermissionDenied("denied"); });
    EXPECT_THROW(m_writer.downgrade(), zvPermissionDenied);
    expectOperations({{"create own1 -> permission denied"}});
    expectStillWriting();
}

TEST_F(Downgrade, AnErrorOfTheFirstRefreshLeavesTheWriterAsItWas)
{
    hold();
    m_scene.before("refresh own1", 1, [] { throw zvFileAccessError("boom"); });
    EXPECT_THROW(m_writer.downgrade(), zvFileAccessError);
    EXPECT_EQ(1u, m_scene.countOf("remove own1"));
    EXPECT_EQ(0u, m_scene.countOf("remove W"));
    expectStillWriting();
}

TEST_F(Downgrade, ARefreshThatCannotBeStartedLeavesTheWriterAsItWas)
{
    hold();
    fake_timer::failNext();
    EXPECT_THROW(m_writer.downgrade(), boost::thread_resource_error);
    EXPECT_EQ(1u, m_scene.countOf("remove own1"));
    expectStillWriting();
}

TEST_F(Downgrade, AMissingDirectoryIsThrown)
{
    hold();
    m_scene.fs().removeDirectory("D");
    EXPECT_THROW(m_writer.downgrade(), zvNoSuchDirectory);
    m_scene.fs().addDirectory("D");
    expectStillWriting();
}

/// The own file may be gone, after thirty seconds of standing still: that does
/// not stop it.
TEST_F(Downgrade, DoesNotLookForTheWritersFile)
{
    hold();
    m_scene.dropWriter();
    const ReadLock reader = m_writer.downgrade();
    EXPECT_TRUE(reader.isAcquired());
    expectFiles({"own1"});
}

}  // namespace
