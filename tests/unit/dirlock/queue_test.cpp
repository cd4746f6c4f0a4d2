#include "tests/unit/dirlock/scene.h"

#include <gmock/gmock.h>

// How a lock claims the lowest free level.

namespace {

using namespace zorvel::test;
using boost::posix_time::microseconds;
using boost::posix_time::milliseconds;
using boost::posix_time::ptime;
using boost::posix_time::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class Queue : public testing::Test
{
protected:
    /// Takes levels from 0 on.
    void takeLevels(int count)
    {
        for (int level = 0; level < count; ++level)
            m_scene.take(level);
    }

    Scene m_scene;
};

TEST_F(Queue, AFreeDirectoryIsTakenAfterOnePause)
{
    EXPECT_TRUE(m_scene.lock().tryAcquire(false));
    EXPECT_EQ(std::vector<long>{5}, fake_clock::sleeps());
    EXPECT_THAT(m_scene.fs().files(), ElementsAre("D/.deploy_lock.0"));
}

TEST_F(Queue, AFreeDirectoryIsTakenThoughTheDeadlineHasPassed)
{
    EXPECT_TRUE(m_scene.lock().acquire(seconds(-100), false));
    EXPECT_TRUE(m_scene.isTaken(0));
}

TEST_F(Queue, ATakenDirectoryIsNotQueuedForWhenTheDeadlineHasPassed)
{
    takeLevels(1);
    EXPECT_FALSE(m_scene.lock().acquire(seconds(-100), false));
    EXPECT_EQ(0u, m_scene.countOf("create"));
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(Queue, FindsTheFirstFreeLevel)
{
    takeLevels(2);
    EXPECT_FALSE(m_scene.lock().acquire(milliseconds(8), false));
    const std::vector<std::string> operations = m_scene.operations();
    EXPECT_EQ((std::vector<std::string>{"exists #0 -> true", "exists #1 -> true", "exists #2 -> false",
                                        "create #2 -> true"}),
              std::vector<std::string>(operations.begin(), operations.begin() + 4));
    EXPECT_FALSE(m_scene.isTaken(2));
}

TEST_F(Queue, AGapInTheRowIsTaken)
{
    m_scene.take(0);
    m_scene.take(2);
    EXPECT_FALSE(m_scene.lock().acquire(milliseconds(8), false));
    EXPECT_EQ(1u, m_scene.countOf("create #1 -> true"));
    EXPECT_EQ(0u, m_scene.countOf("exists #2"));
}

TEST_F(Queue, ADeadlineOneIntervalAwayIsFarEnough)
{
    takeLevels(1);
    EXPECT_FALSE(m_scene.lock().acquire(milliseconds(5), false));
    EXPECT_EQ(1u, m_scene.countOf("create #1 -> true"));
    // Reached the deadline with the creation: one attempt on level 0 is left.
    EXPECT_EQ(1u, m_scene.countOf("create #0 -> false"));
    EXPECT_EQ(std::vector<long>{5}, fake_clock::sleeps());
    EXPECT_EQ("remove #1 now -> true", m_scene.operations().back());
}

TEST_F(Queue, ADeadlineNearerThanOneIntervalIsNot)
{
    takeLevels(1);
    EXPECT_FALSE(m_scene.lock().acquire(microseconds(4999), false));
    EXPECT_THAT(m_scene.operations(),
                ElementsAre("exists #0 -> true", "exists #1 -> false", "remove #-1 +4999us -> false"));
}

TEST_F(Queue, AFullQueueIsSeenWithoutAPause)
{
    takeLevels(1024);
    EXPECT_FALSE(m_scene.lock().acquire(seconds(3600), false));
    EXPECT_EQ(1024u, m_scene.countOf("exists #"));
    EXPECT_EQ(1u, m_scene.countOf("exists #1023 -> true"));
    EXPECT_EQ(0u, m_scene.countOf("create"));
    EXPECT_EQ("remove #-1 +3600000000us -> false", m_scene.operations().back());
    EXPECT_EQ(1025u, m_scene.operations().size());
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
    EXPECT_EQ(1024u, m_scene.fs().files().size());
}

TEST_F(Queue, TheLastLevelIsUsed)
{
    takeLevels(1023);
    EXPECT_FALSE(m_scene.lock().acquire(milliseconds(5), false));
    EXPECT_EQ(1u, m_scene.countOf("create #1023 -> true"));
    EXPECT_FALSE(m_scene.isTaken(1023));
}

TEST_F(Queue, TheLastLevelMayBeLostToo)
{
    takeLevels(1023);
    m_scene.refuse("create #1023");
    EXPECT_FALSE(m_scene.lock().acquire(seconds(3600), false));
    EXPECT_EQ(0u, m_scene.countOf("exists #1024"));
    EXPECT_EQ("remove #-1 +3599995000us -> false", m_scene.operations().back());
}

TEST_F(Queue, ALostRaceGoesOnToTheNextLevel)
{
    m_scene.refuse("create #0", 1);
    m_scene.refuse("create #1", 1);
    EXPECT_TRUE(m_scene.lock().acquire(seconds(1), false));
    const std::vector<std::string> operations = m_scene.operations();
    EXPECT_EQ((std::vector<std::string>{"exists #0 -> false", "create #0 -> false", "exists #1 -> false",
                                        "create #1 -> false", "exists #2 -> false", "create #2 -> true"}),
              std::vector<std::string>(operations.begin(), operations.begin() + 6));
}

TEST_F(Queue, ALostRaceForTheDirectoryWithoutTimeIsTheEnd)
{
    m_scene.refuse("create #0", 1);
    EXPECT_FALSE(m_scene.lock().tryAcquire(false));
    EXPECT_THAT(m_scene.operations(), ElementsAre("exists #0 -> false", "create #0 -> false", "exists #1 -> false",
                                                  "remove #-1 -5000us -> false"));
}

TEST_F(Queue, ThePauseLiesBetweenTheTestAndTheCreation)
{
    ptime created;
    m_scene.before("create #0", 1, [&] { created = fake_clock::now(); });
    EXPECT_TRUE(m_scene.lock().tryAcquire(false));
    EXPECT_EQ(fake_clock::start() + milliseconds(5), created);
}

}  // namespace
