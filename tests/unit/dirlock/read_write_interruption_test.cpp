#include <zorvel/errors.h>

#include "tests/unit/dirlock/read_write_order.h"

#include <boost/thread/thread.hpp>

#include <functional>

// boost::thread_interrupted out of each sleep of an acquire, on both sides.

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

typedef bool (*Acquire)(ReadWriteScene& scene);

bool read(ReadWriteScene& scene)
{
    return scene.reader().acquire(seconds(10), false);
}

bool write(ReadWriteScene& scene)
{
    return scene.writer().acquire(seconds(10), false);
}

/// Acquires on a thread that is interrupted right before an operation.
Outcome interruptedBefore(ReadWriteScene& scene, Acquire acquire, const std::string& operation, std::size_t nth)
{
    Outcome outcome = notAcquired;
    boost::thread thread;
    boost::mutex begin;
    boost::unique_lock<boost::mutex> notYet(begin);
    scene.before(operation, nth, [&] { thread.interrupt(); });
    thread = boost::thread([&] {
        {
            const boost::lock_guard<boost::mutex> started(begin);
        }
        try {
            if (acquire(scene))
                outcome = acquired;
        } catch (const boost::thread_interrupted&) {
            outcome = interrupted;
        }
    });
    notYet.unlock();
    thread.join();
    return outcome;
}

/// Nothing is held or runs, only what others have lies in the directory, and
/// both sides work again without it.
void expectIdle(ReadWriteScene& scene, const Lines& ofOthers)
{
    EXPECT_FALSE(scene.reader().isAcquired());
    EXPECT_FALSE(scene.writer().isAcquired());
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_THAT(scene.shortFiles(), testing::UnorderedElementsAreArray(ofOthers));
    for (const std::string& file : scene.fs().files())
        scene.fs().removeFileNow(file);
    EXPECT_TRUE(scene.reader().tryAcquire(false));
    EXPECT_TRUE(scene.reader().release());
    EXPECT_TRUE(scene.writer().tryAcquire(false));
    EXPECT_TRUE(scene.writer().release());
    EXPECT_THAT(scene.fs().files(), IsEmpty());
}

TEST(ReadWriteInterruption, InTheQueueOfTheGuard)
{
    for (const Acquire acquire : {&read, &write}) {
        ReadWriteScene scene;
        EXPECT_EQ(interrupted, interruptedBefore(scene, acquire, "exists #0", 1));
        expectIdle(scene, {});
    }
}

TEST(ReadWriteInterruption, WhileWaitingForTheGuard)
{
    for (const Acquire acquire : {&read, &write}) {
        ReadWriteScene scene;
        scene.take(0);
        EXPECT_EQ(interrupted, interruptedBefore(scene, acquire, "mtime #0", 3));
        expectIdle(scene, {"#0"});
    }
}

TEST(ReadWriteInterruption, OfAReaderInItsPause)
{
    for (const std::size_t pass : {1u, 2u, 5u}) {
        ReadWriteScene scene;
        scene.addWriter();
        EXPECT_EQ(interrupted, interruptedBefore(scene, &read, "mtime W", pass));
        EXPECT_EQ(pass, scene.countOf("anyMatch W"));
        EXPECT_EQ(pass, scene.countOf("remove #0"));
        expectIdle(scene, {"W"});
    }
}

TEST(ReadWriteInterruption, OfAWriterInItsPause)
{
    for (const std::size_t pass : {1u, 2u, 5u}) {
        ReadWriteScene scene;
        scene.addReader(1);
        EXPECT_EQ(interrupted, interruptedBefore(scene, &write, "anyMatch R*", pass));
        EXPECT_EQ(pass, scene.countOf("anyMatch R*"));
        EXPECT_EQ(pass, scene.countOf("remove #0"));
        expectIdle(scene, {"R1"});
    }
}

TEST(ReadWriteInterruption, InTheGuardOfALaterPass)
{
    ReadWriteScene readers;
    readers.addWriter();
    EXPECT_EQ(interrupted, interruptedBefore(readers, &read, "exists #0", 3));
    expectIdle(readers, {"W"});
    ReadWriteScene writers;
    writers.addReader(1);
    EXPECT_EQ(interrupted, interruptedBefore(writers, &write, "exists #0", 3));
    expectIdle(writers, {"R1"});
}

TEST(ReadWriteInterruption, AfterTheLastPauseItStaysPending)
{
    ReadWriteScene readers;
    EXPECT_EQ(acquired, interruptedBefore(readers, &read, "anyMatch W", 1));
    EXPECT_TRUE(readers.reader().release());
    expectIdle(readers, {});
    ReadWriteScene writers;
    EXPECT_EQ(acquired, interruptedBefore(writers, &write, "walk R*", 1));
    EXPECT_TRUE(writers.writer().release());
    expectIdle(writers, {});
}

TEST(ReadWriteInterruption, OfTheOwnFileLeavesNoFile)
{
    for (const char* operation : {"create own1", "refresh own1", "exists own1"}) {
        ReadWriteScene scene;
        scene.before(operation, 1, [] { throw boost::thread_interrupted(); });
        EXPECT_THROW(read(scene), boost::thread_interrupted) << operation;
        expectIdle(scene, {});
    }
    for (const char* operation : {"refresh W", "exists W"}) {
        ReadWriteScene scene;
        scene.before(operation, 1, [] { throw boost::thread_interrupted(); });
        EXPECT_THROW(write(scene), boost::thread_interrupted) << operation;
        expectIdle(scene, {});
    }
}

TEST(ReadWriteInterruption, OfADowngradeLeavesTheWriterAsItWas)
{
    for (const char* operation : {"create own1", "refresh own1"}) {
        ReadWriteScene scene;
        ASSERT_TRUE(write(scene));
        scene.before(operation, 1, [] { throw boost::thread_interrupted(); });
        EXPECT_THROW(scene.writer().downgrade(), boost::thread_interrupted) << operation;
        EXPECT_THAT(scene.shortFiles(), testing::ElementsAre("W"));
        EXPECT_TRUE(scene.writer().release());
        expectIdle(scene, {});
    }
}

bool turnIntoAReader(ReadWriteScene& scene)
{
    EXPECT_TRUE(write(scene));
    zvDirectoryReadWriteLock::ReadLock reader = scene.writer().downgrade();
    EXPECT_TRUE(reader.isAcquired());
    return reader.release();
}

/// Neither has a pause in which it could be.
TEST(ReadWriteInterruption, DowngradesAndReleasesAreNotInterrupted)
{
    for (const char* operation : {"create own1", "remove W", "remove own1"}) {
        ReadWriteScene scene;
        EXPECT_EQ(acquired, interruptedBefore(scene, &turnIntoAReader, operation, 1)) << operation;
        expectIdle(scene, {});
    }
}

/// The thread is interrupted, and the removal of what it claimed has a pause.
TEST(ReadWriteInterruption, TheRemovalOfAClaimedFileIsNotInterrupted)
{
    ReadWriteScene scene;
    boost::thread thread;
    boost::mutex begin;
    boost::unique_lock<boost::mutex> notYet(begin);
    scene.before("refresh own1", 1, [&] {
        thread.interrupt();
        throw zvFileAccessError("boom");
    });
    scene.before("remove own1", 1, [] { boost::this_thread::interruption_point(); });
    bool failed = false;
    thread = boost::thread([&] {
        {
            const boost::lock_guard<boost::mutex> started(begin);
        }
        try {
            read(scene);
        } catch (const zvFileAccessError&) {
            failed = true;
        }
    });
    notYet.unlock();
    thread.join();
    EXPECT_TRUE(failed);
    expectIdle(scene, {});
}

/// However many numbers are taken: each is a point of interruption.
TEST(ReadWriteInterruption, OfTheSearchForANumber)
{
    ReadWriteScene readers;
    readers.refuse("create own1");
    EXPECT_EQ(interrupted, interruptedBefore(readers, &read, "create own1", 1));
    expectIdle(readers, {});
    ReadWriteScene writers;
    writers.refuse("create own1");
    EXPECT_EQ(interrupted, interruptedBefore(writers, &turnIntoAReader, "create own1", 1));
    EXPECT_THAT(writers.shortFiles(), testing::ElementsAre("W"));
    EXPECT_TRUE(writers.writer().release());
    expectIdle(writers, {});
}

}  // namespace
