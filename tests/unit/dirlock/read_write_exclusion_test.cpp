#include "tests/unit/dirlock/read_write_order.h"

// Who may be in a directory with whom.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using testing::IsEmpty;

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

class ReadWriteExclusion : public testing::Test
{
protected:
    ReadWriteScene m_scene;
    ReadLock& m_reader = m_scene.reader();
    WriteLock& m_writer = m_scene.writer();
    ReadLock m_otherReader = m_scene.both().getReadLock();
    WriteLock m_otherWriter = m_scene.both().getWriteLock();
};

TEST_F(ReadWriteExclusion, ReadersReadTogether)
{
    EXPECT_TRUE(m_reader.tryAcquire(false));
    EXPECT_TRUE(m_otherReader.tryAcquire(false));
    EXPECT_EQ(2u, m_scene.fs().files().size());
    EXPECT_TRUE(m_reader.release());
    EXPECT_TRUE(m_otherReader.isAcquired());
    EXPECT_TRUE(m_otherReader.release());
    EXPECT_THAT(m_scene.fs().files(), IsEmpty());
}

TEST_F(ReadWriteExclusion, AReaderKeepsWritersOut)
{
    ASSERT_TRUE(m_reader.tryAcquire(false));
    EXPECT_FALSE(m_writer.acquire(milliseconds(100), false));
    EXPECT_TRUE(m_reader.isAcquired());
    EXPECT_TRUE(m_reader.release());
    EXPECT_TRUE(m_writer.tryAcquire(false));
}

TEST_F(ReadWriteExclusion, AWriterKeepsReadersOut)
{
    ASSERT_TRUE(m_writer.tryAcquire(false));
    EXPECT_FALSE(m_reader.acquire(milliseconds(100), false));
    EXPECT_TRUE(m_writer.release());
    EXPECT_TRUE(m_reader.tryAcquire(false));
}

TEST_F(ReadWriteExclusion, AWriterKeepsWritersOut)
{
    ASSERT_TRUE(m_writer.tryAcquire(false));
    EXPECT_FALSE(m_otherWriter.acquire(milliseconds(100), false));
    EXPECT_TRUE(m_writer.release());
    EXPECT_TRUE(m_otherWriter.tryAcquire(false));
    EXPECT_FALSE(m_writer.tryAcquire(false));
}

/// Each look is made under the guard, by a process of its own.
TEST_F(ReadWriteExclusion, HoldersOfTheExclusiveLockKeepBothOut)
{
    ASSERT_TRUE(m_scene.lock().tryAcquire(false));
    m_scene.before("create #0", 3, [&] { m_scene.lock().release(); });
    EXPECT_TRUE(m_reader.acquire(seconds(10), false));
    EXPECT_EQ(3u, m_scene.countOf("create #0 -> "));
}

/// It leaves no mark while it waits: between two of its passes (each asks for
/// level 0 twice) a reader comes in, before the first one leaves.
TEST_F(ReadWriteExclusion, ReadersComeInWhileAWriterWaits)
{
    ASSERT_TRUE(m_reader.tryAcquire(false));
    bool cameIn = false;
    const std::size_t soFar = m_scene.countOf("exists #0");
    m_scene.before("exists #0", soFar + 3, [&] {
        cameIn = m_otherReader.tryAcquire(false);
        EXPECT_TRUE(m_reader.release());
    });
    m_scene.before("exists #0", soFar + 7, [&] { EXPECT_TRUE(m_otherReader.release()); });
    EXPECT_TRUE(m_writer.acquire(seconds(10), false));
    EXPECT_TRUE(cameIn);
    EXPECT_EQ(2u, m_scene.countOf("anyMatch R* -> true"));
}

TEST_F(ReadWriteExclusion, UnrefreshedHoldsAreClearedAfterThirtySeconds)
{
    ASSERT_TRUE(m_reader.tryAcquire(true));
    ASSERT_TRUE(m_otherReader.tryAcquire(true));
    fake_clock::advance(seconds(28));
    EXPECT_FALSE(m_writer.tryAcquire(true));
    fake_clock::advance(seconds(4));
    EXPECT_TRUE(m_writer.tryAcquire(true));
    EXPECT_THAT(m_scene.shortFiles(), testing::ElementsAre("W"));
    fake_clock::advance(seconds(28));
    EXPECT_FALSE(m_otherWriter.tryAcquire(true));
    EXPECT_TRUE(m_reader.release());
    EXPECT_FALSE(m_reader.tryAcquire(true));
    fake_clock::advance(seconds(4));
    EXPECT_TRUE(m_reader.tryAcquire(true));
}

TEST_F(ReadWriteExclusion, RefreshedHoldsLast)
{
    ASSERT_TRUE(m_reader.tryAcquire(false));
    for (int i = 0; i < 100; ++i) {
        fake_clock::advance(seconds(1));
        fake_timer::fire();
    }
    EXPECT_FALSE(m_writer.tryAcquire(false));
    EXPECT_TRUE(m_reader.release());
    ASSERT_TRUE(m_writer.tryAcquire(false));
    for (int i = 0; i < 100; ++i) {
        fake_clock::advance(seconds(1));
        fake_timer::fire();
    }
    EXPECT_FALSE(m_reader.tryAcquire(false));
    EXPECT_FALSE(m_otherWriter.tryAcquire(false));
}

TEST_F(ReadWriteExclusion, AFileIsStaleAfterThirtySeconds)
{
    m_scene.addWriter(29);
    EXPECT_FALSE(m_reader.tryAcquire(false));
    m_scene.addWriter(31);
    EXPECT_TRUE(m_reader.tryAcquire(false));
}

TEST_F(ReadWriteExclusion, ADeadWriterIsWaitedForThirtySeconds)
{
    m_scene.addWriter();
    EXPECT_TRUE(m_reader.acquire(seconds(100), false));
    const boost::posix_time::time_duration waited = fake_clock::now() - fake_clock::start();
    EXPECT_GT(waited, seconds(30));
    EXPECT_LT(waited, seconds(32));
}

TEST_F(ReadWriteExclusion, ADeadReaderIsWaitedForThirtySeconds)
{
    m_scene.addReader(1);
    EXPECT_TRUE(m_writer.acquire(seconds(100), false));
    const boost::posix_time::time_duration waited = fake_clock::now() - fake_clock::start();
    EXPECT_GT(waited, seconds(30));
    EXPECT_LT(waited, seconds(32));
}

TEST_F(ReadWriteExclusion, ServerClocksDoNotMatter)
{
    for (const long offset : {120L, -120L, 3600L, -3600L}) {
        ReadWriteScene scene;
        scene.fs().setServerOffset(seconds(offset));
        scene.addReader(1, 28);
        scene.addWriter(28);
        EXPECT_FALSE(scene.reader().tryAcquire(false));
        EXPECT_FALSE(scene.writer().tryAcquire(false));
        scene.addReader(1, 40);
        scene.addWriter(40);
        EXPECT_TRUE(scene.writer().tryAcquire(false));
        EXPECT_TRUE(scene.writer().release());
        scene.addWriter(40);
        EXPECT_TRUE(scene.reader().tryAcquire(false));
    }
}

}  // namespace
