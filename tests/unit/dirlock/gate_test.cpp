#include "tests/unit/dirlock/read_write_order.h"

// Whoever tries, or reaches its deadline, goes on without the guard; so two can
// come in at once. A gate in front of the lock keeps them apart.

namespace {

using namespace zorvel::test;

typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

const boost::posix_time::milliseconds timeout(100);

class Gate : public testing::Test
{
protected:
    Gate()
    {
        m_scene.fs().addDirectory("D/gate");
        m_scene.fs().addDirectory("D\\gate");
    }

    /// What a second writer does while the first is between its look and its
    /// mark.
    template <class Second>
    void whileTheFirstComesIn(Second second)
    {
        m_scene.before("refresh W", 1, second);
    }

    bool acquireBehindGate(WriteLock& lock)
    {
        zvDirectoryExclusiveLock gate("D/gate", "gate", m_scene.sharedFs());
        const bool mine = gate.acquire(timeout, false) && lock.acquire(timeout, false);
        gate.release();
        return mine;
    }

    ReadWriteScene m_scene;
    WriteLock& m_first = m_scene.writer();
    WriteLock m_second = m_scene.both().getWriteLock();
};

/// On purpose: whether the guard came is not looked at. This is what users are
/// told to guard against.
TEST_F(Gate, WithoutItTwoWritersWhoTryCanBothComeIn)
{
    bool second = false;
    whileTheFirstComesIn([&] { second = m_second.tryAcquire(false); });
    EXPECT_TRUE(m_first.tryAcquire(false));
    EXPECT_TRUE(second);
}

TEST_F(Gate, KeepsTheSecondOut)
{
    bool second = true;
    whileTheFirstComesIn([&] { second = acquireBehindGate(m_second); });
    EXPECT_TRUE(acquireBehindGate(m_first));
    EXPECT_FALSE(second);
    EXPECT_THAT(m_scene.shortFiles(), testing::ElementsAre("W"));
}

}  // namespace
