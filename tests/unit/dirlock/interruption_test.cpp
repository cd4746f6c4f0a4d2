#include <zorvel/errors.h>

#include "tests/support/fake_timer.h"
#include "tests/unit/dirlock/scene.h"

#include <boost/thread/thread.hpp>

#include <gmock/gmock.h>

#include <functional>

// boost::thread_interrupted out of each sleep of an acquire.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using testing::IsEmpty;

enum Outcome
{
    acquired,
    notAcquired,
    interrupted
};

/// Acquires on a thread that is interrupted right before an operation.
Outcome acquireInterruptedBefore(Scene& scene, const std::string& operation, std::size_t nth)
{
    Outcome outcome = notAcquired;
    boost::thread thread;
    boost::mutex begin;
    boost::unique_lock<boost::mutex> notYet(begin);
    scene.before(operation, nth, [&] { thread.interrupt(); });
    thread = boost::thread([&] {
        {
            const boost::lock_guard<boost::mutex> lock(begin);
        }
        try {
            if (scene.lock().acquire(seconds(10), false))
                outcome = acquired;
        } catch (const boost::thread_interrupted&) {
            outcome = interrupted;
        }
    });
    notYet.unlock();
    thread.join();
    return outcome;
}

void expectFree(Scene& scene)
{
    EXPECT_FALSE(scene.lock().isAcquired());
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_THAT(scene.fs().files(), IsEmpty());
    EXPECT_TRUE(scene.lock().acquire(boost::posix_time::time_duration(0, 0, 0), false));
    EXPECT_TRUE(scene.lock().release());
}

TEST(Interruption, InThePauseOfTheQueue)
{
    Scene scene;
    EXPECT_EQ(interrupted, acquireInterruptedBefore(scene, "exists #0", 1));
    expectFree(scene);
}

TEST(Interruption, InTheFirstPauseAfterQueuing)
{
    Scene scene;
    scene.take(0);
    EXPECT_EQ(interrupted, acquireInterruptedBefore(scene, "create #1", 1));
    EXPECT_FALSE(scene.isTaken(1));
    scene.free(0);
    expectFree(scene);
}

TEST(Interruption, WhileWaiting)
{
    Scene scene;
    scene.take(0);
    EXPECT_EQ(interrupted, acquireInterruptedBefore(scene, "mtime #0", 3));
    EXPECT_FALSE(scene.isTaken(1));
    scene.free(0);
    expectFree(scene);
}

TEST(Interruption, AfterTheLastPauseItStaysPending)
{
    Scene scene;
    EXPECT_EQ(acquired, acquireInterruptedBefore(scene, "create #0", 1));
    EXPECT_TRUE(scene.isTaken(0));
    EXPECT_TRUE(scene.lock().release());
}

TEST(Interruption, OfAFileOperationWhileQueuedLeavesNoFile)
{
    Scene scene;
    scene.take(0);
    scene.before("create #0", 2, [] { throw boost::thread_interrupted(); });
    EXPECT_THROW(scene.lock().acquire(seconds(10), false), boost::thread_interrupted);
    EXPECT_FALSE(scene.isTaken(1));
    scene.free(0);
    expectFree(scene);
}

TEST(Interruption, OfTheQueuesCleanUpAfterAnErrorLeavesNoFile)
{
    Scene scene;
    scene.take(0);
    scene.before("create #0", 2, [] { throw zvFileAccessError("the error"); });
    scene.before("remove #1", 1, [] { throw boost::thread_interrupted(); });
    EXPECT_THROW(scene.lock().acquire(seconds(10), false), boost::thread_interrupted);
    EXPECT_FALSE(scene.isTaken(1));
    scene.free(0);
    expectFree(scene);
}

/// A link that leads nowhere: it exists for a creation and not for its time.
TEST(Interruption, OfAnAcquireThatFindsAVanishedFileAgainAndAgain)
{
    Scene scene;
    scene.take(0);
    scene.refuse("create #0");
    boost::thread thread;
    int judged = 0;
    boost::mutex begin;
    boost::unique_lock<boost::mutex> notYet(begin);
    scene.fs().setHook([&](const Operation& operation) {
        if (operation.verb != "mtime" || operation.name != scene.nameOf(0))
            return;
        if (++judged == 100)
            thread.interrupt();
        throw zvFileNotFoundError(operation.name);
    });
    Outcome outcome = notAcquired;
    thread = boost::thread([&] {
        {
            const boost::lock_guard<boost::mutex> lock(begin);
        }
        try {
            scene.lock().acquire(boost::posix_time::time_duration(boost::posix_time::pos_infin), false);
        } catch (const boost::thread_interrupted&) {
            outcome = interrupted;
        }
    });
    notYet.unlock();
    thread.join();
    EXPECT_EQ(interrupted, outcome);
    EXPECT_EQ(100, judged);
    EXPECT_FALSE(scene.isTaken(1));
}

TEST(Interruption, OfTheFinalLockFileLeavesNoFile)
{
    Scene scene;
    scene.before("refresh #0", 1, [] { throw boost::thread_interrupted(); });
    EXPECT_THROW(scene.lock().tryAcquire(false), boost::thread_interrupted);
    expectFree(scene);
}

}  // namespace
