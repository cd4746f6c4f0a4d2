#include "tests/unit/dirlock/scene.h"

#include <gmock/gmock.h>

// What a queued lock does while time passes.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::ptime;
using boost::posix_time::seconds;

class Waiting : public testing::Test
{
protected:
    /// The times of the refreshes of the own file of level 1, in milliseconds.
    std::vector<long> refreshTimes(const boost::posix_time::time_duration& timeout)
    {
        std::vector<long> times;
        m_scene.before("refresh #1", 0, [&] {
            times.push_back(static_cast<long>((fake_clock::now() - fake_clock::start()).total_milliseconds()));
        });
        m_scene.take(0);
        EXPECT_FALSE(m_scene.lock().acquire(timeout, false));
        return times;
    }

    Scene m_scene;
};

TEST_F(Waiting, TheOwnFileIsRefreshedOnceASecond)
{
    EXPECT_EQ((std::vector<long>{1005, 2005, 3005}), refreshTimes(milliseconds(3500)));
}

TEST_F(Waiting, TheOwnFileIsNotRefreshedWithinASecond)
{
    EXPECT_TRUE(refreshTimes(milliseconds(1000)).empty());
}

TEST_F(Waiting, ARefreshHasTimeUntilTheDeadlineOfTheAcquire)
{
    refreshTimes(milliseconds(3500));
    EXPECT_EQ(1u, m_scene.countOf("refresh #1 +2495000us -> true"));
    EXPECT_EQ(1u, m_scene.countOf("refresh #1 +1495000us -> true"));
    EXPECT_EQ(1u, m_scene.countOf("refresh #1 +495000us -> true"));
}

TEST_F(Waiting, ARefreshThatTimesOutChangesNothing)
{
    m_scene.refuse("refresh #1");
    EXPECT_EQ((std::vector<long>{1005, 2005, 3005}), refreshTimes(milliseconds(3500)));
    EXPECT_FALSE(m_scene.isTaken(1));
}

TEST_F(Waiting, ThePollIsEveryFiveMilliseconds)
{
    refreshTimes(milliseconds(500));
    EXPECT_EQ(std::vector<long>(100, 5), fake_clock::sleeps());
    EXPECT_EQ(99u, m_scene.countOf("create #0 -> false"));
    EXPECT_EQ(99u, m_scene.countOf("mtime #0"));
}

TEST_F(Waiting, ALevelWonCountsAsARefresh)
{
    m_scene.take(0);
    m_scene.take(1);
    std::vector<long> times;
    m_scene.before("refresh #1", 0, [&] {
        times.push_back(static_cast<long>((fake_clock::now() - fake_clock::start()).total_milliseconds()));
    });
    // The pass at 700 ms takes level 1.
    m_scene.before("create #1", 140, [&] { m_scene.free(1); });
    EXPECT_FALSE(m_scene.lock().acquire(milliseconds(2500), false));
    const long won = 705;
    EXPECT_EQ((std::vector<long>{won + 1000}), times);
}

TEST_F(Waiting, AFreshHolderIsWaitedForHoweverLong)
{
    m_scene.take(0);
    // The holder refreshes its file every pass of ours.
    m_scene.before("mtime #0", 0, [&] { m_scene.take(0); });
    EXPECT_FALSE(m_scene.lock().acquire(seconds(100), false));
    EXPECT_TRUE(m_scene.isTaken(0));
    EXPECT_FALSE(m_scene.isTaken(1));
}

TEST_F(Waiting, ADeadHolderIsWaitedForThirtySeconds)
{
    m_scene.take(0);
    EXPECT_TRUE(m_scene.lock().acquire(seconds(100), false));
    const boost::posix_time::time_duration waited = fake_clock::now() - fake_clock::start();
    EXPECT_GT(waited, seconds(30));
    EXPECT_LT(waited, seconds(32));
}

TEST_F(Waiting, ADeadHolderIsTakenOverAfterTheDeadlineToo)
{
    m_scene.take(0, 40);
    EXPECT_TRUE(m_scene.lock().acquire(milliseconds(7), false));
    EXPECT_GT(fake_clock::now(), fake_clock::start() + milliseconds(7));
}

TEST_F(Waiting, ADeadOneInTheQueueIsTakenOver)
{
    m_scene.take(0);
    m_scene.take(1, 40);
    m_scene.before("create #0", 3, [&] { m_scene.free(0); });
    EXPECT_TRUE(m_scene.lock().acquire(seconds(10), false));
    EXPECT_EQ(1u, m_scene.countOf("refresh #1"));
    EXPECT_EQ(1u, m_scene.countOf("remove #2"));
    EXPECT_EQ(std::vector<std::string>{"D/.deploy_lock.0"}, m_scene.fs().files());
}

TEST_F(Waiting, ServerClocksDoNotMatter)
{
    for (const long offset : {120L, -120L, 3600L, -3600L}) {
        Scene scene;
        scene.fs().setServerOffset(seconds(offset));
        scene.take(0, 28);
        EXPECT_FALSE(scene.lock().acquire(milliseconds(100), false));
        scene.take(0, 40);
        EXPECT_TRUE(scene.lock().acquire(milliseconds(100), false));
    }
}

}  // namespace
