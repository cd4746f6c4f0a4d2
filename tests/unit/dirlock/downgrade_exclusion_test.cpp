#include "tests/unit/dirlock/read_write_order.h"

// A writer becomes a reader while another writer is looking: it takes no guard
// for that, so it can happen between any two of the other's operations.

namespace {

using namespace zorvel::test;

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

struct Meeting
{
    bool downgraded = false;
    bool otherCameIn = false;
    std::size_t operations = 0;
};

/// The holder becomes a reader before the nth operation of the other's try.
Meeting meetAt(std::size_t nth)
{
    ReadWriteScene scene;
    WriteLock& holder = scene.writer();
    WriteLock other = scene.both().getWriteLock();
    ReadLock reader = scene.both().getReadLock();
    EXPECT_TRUE(holder.tryAcquire(false));
    Meeting meeting;
    std::size_t count = 0;
    scene.fs().setHook([&](const Operation&) {
        if (++count != nth)
            return;
        reader = holder.downgrade();
        meeting.downgraded = reader.isAcquired();
    });
    meeting.otherCameIn = other.tryAcquire(false);
    scene.fs().setHook(nullptr);
    meeting.operations = count;
    EXPECT_TRUE(meeting.downgraded ? reader.release() : holder.release());
    if (!meeting.otherCameIn) {
        EXPECT_TRUE(other.tryAcquire(false));
    }
    EXPECT_THAT(scene.shortFiles(), testing::ElementsAre("W"));
    return meeting;
}

TEST(DowngradeExclusion, NoWriterComesInBesideTheReader)
{
    const std::size_t operations = meetAt(0).operations;
    ASSERT_LT(10u, operations);
    for (std::size_t nth = 1; nth <= operations; ++nth) {
        const Meeting meeting = meetAt(nth);
        EXPECT_TRUE(meeting.downgraded) << "at operation " << nth;
        EXPECT_FALSE(meeting.otherCameIn) << "at operation " << nth;
    }
}

class ThirdLook : public ReadWriteOrder
{
protected:
    std::vector<std::string> looks() const
    {
        std::vector<std::string> result;
        for (const std::string& line : m_scene.operations()) {
            if (line.compare(0, 8, "anyMatch") == 0)
                result.push_back(line);
        }
        return result;
    }
};

TEST_F(ThirdLook, IsTakenWhenAWriterHasJustLeft)
{
    m_scene.addWriter();
    m_scene.before("anyMatch W", 1, [this] { m_scene.dropWriter(); });
    EXPECT_TRUE(m_scene.writer().tryAcquire(false));
    EXPECT_THAT(looks(), testing::ElementsAre("anyMatch R* -> false", "anyMatch W -> false", "anyMatch R* -> false"));
}

TEST_F(ThirdLook, IsNotTakenWhenNobodyWasThere)
{
    EXPECT_TRUE(m_scene.writer().tryAcquire(false));
    EXPECT_THAT(looks(), testing::ElementsAre("anyMatch R* -> false", "anyMatch W -> false"));
}

TEST_F(ThirdLook, IsNotTakenAfterADeadWriter)
{
    m_scene.addWriter(40);
    EXPECT_TRUE(m_scene.writer().tryAcquire(false));
    EXPECT_THAT(looks(), testing::ElementsAre("anyMatch R* -> false", "anyMatch W -> false"));
}

}  // namespace
