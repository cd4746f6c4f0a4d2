#include <zorvel/errors.h>

#include "tests/unit/dirlock/read_write_order.h"

#include <boost/thread/exceptions.hpp>

#include <new>

// What leaves a reader or a writer when the file system fails, and what stays
// behind.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using testing::IsEmpty;

/// Nothing is held, nothing runs, no file is left, and both sides work.
void expectIdle(ReadWriteScene& scene)
{
    EXPECT_FALSE(scene.reader().isAcquired());
    EXPECT_FALSE(scene.writer().isAcquired());
    EXPECT_FALSE(scene.reader().release());
    EXPECT_FALSE(scene.writer().release());
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_THAT(scene.shortFiles(), IsEmpty());
    EXPECT_TRUE(scene.reader().tryAcquire(false));
    EXPECT_TRUE(scene.reader().release());
    EXPECT_TRUE(scene.writer().tryAcquire(false));
    EXPECT_TRUE(scene.writer().release());
}

/// The guard is free, so what it throws is not narrowed to the base.
TEST(ReadWriteErrors, OfTheGuardLeaveAsTheyAre)
{
    for (const char* operation : {"exists #0", "create #0", "refresh #0"}) {
        ReadWriteScene readers;
        readers.before(operation, 1, [] { throw zvPermissionDenied("denied"); });
        EXPECT_THROW(readers.reader().tryAcquire(false), zvPermissionDenied) << operation;
        expectIdle(readers);
        ReadWriteScene writers;
        writers.before(operation, 1, [] { throw zvPermissionDenied("denied"); });
        EXPECT_THROW(writers.writer().tryAcquire(false), zvPermissionDenied) << operation;
        expectIdle(writers);
    }
}

TEST(ReadWriteErrors, OfAQueuedGuardAreTheBaseItself)
{
    for (const bool writes : {false, true}) {
        ReadWriteScene scene;
        scene.take(0);
        scene.before("mtime #0", 1, [&scene] {
            scene.free(0);
            throw zvPermissionDenied("denied");
        });
        try {
            writes ? scene.writer().acquire(seconds(10), false) : scene.reader().acquire(seconds(10), false);
            FAIL() << "nothing thrown";
        } catch (const zvFileBasedLockError& error) {
            EXPECT_EQ(typeid(zvFileBasedLockError), typeid(error));
        }
        expectIdle(scene);
    }
}

TEST(ReadWriteErrors, AReadersFileThatCannotBeRefreshedIsRemoved)
{
    ReadWriteScene scene;
    scene.before("refresh own1", 1, [] { throw zvFileAccessError("boom"); });
    EXPECT_THROW(scene.reader().tryAcquire(false), zvFileAccessError);
    EXPECT_EQ(1u, scene.countOf("remove own1"));
    EXPECT_EQ("remove #0 +1000000us -> true", scene.operations().back());
    expectIdle(scene);
}

TEST(ReadWriteErrors, AWritersFileThatCannotBeRefreshedIsRemoved)
{
    ReadWriteScene scene;
    scene.before("refresh W", 1, [&] {
        scene.addWriter();
        throw zvFileAccessError("boom");
    });
    EXPECT_THROW(scene.writer().tryAcquire(false), zvFileAccessError);
    EXPECT_EQ(1u, scene.countOf("remove W"));
    EXPECT_EQ("remove #0 +1000000us -> true", scene.operations().back());
    expectIdle(scene);
}

/// Without its guard it cannot know whose file that is.
TEST(ReadWriteErrors, AWriterWithoutItsGuardRemovesNothingItDidNotMake)
{
    ReadWriteScene scene;
    scene.take(0);
    scene.before("refresh W", 1, [&] {
        scene.addWriter();
        throw zvFileAccessError("boom");
    });
    EXPECT_THROW(scene.writer().tryAcquire(false), zvFileAccessError);
    EXPECT_EQ(0u, scene.countOf("remove W"));
    EXPECT_THAT(scene.shortFiles(), testing::UnorderedElementsAre("#0", "W"));
    scene.free(0);
    scene.dropWriter();
    expectIdle(scene);
}

TEST(ReadWriteErrors, ARefreshThatCannotBeStartedLeavesAsItIs)
{
    ReadWriteScene readers;
    readers.before("refresh own1", 1, [] { fake_timer::failNext(); });
    EXPECT_THROW(readers.reader().tryAcquire(false), boost::thread_resource_error);
    EXPECT_EQ(1u, readers.countOf("remove own1"));
    expectIdle(readers);
    ReadWriteScene writers;
    writers.before("refresh W", 1, [] { fake_timer::failNext(); });
    EXPECT_THROW(writers.writer().tryAcquire(false), boost::thread_resource_error);
    EXPECT_EQ(1u, writers.countOf("remove W"));
    expectIdle(writers);
}

/// Nobody can tell whether the lock file has removed itself; by now the name
/// may be somebody else's. The file goes stale.
TEST(ReadWriteErrors, OutOfMemoryAFileIsLeftToGoStale)
{
    ReadWriteScene readers;
    readers.before("refresh own1", 1, [] { throw std::bad_alloc(); });
    EXPECT_THROW(readers.reader().tryAcquire(false), std::bad_alloc);
    EXPECT_EQ(0u, readers.countOf("remove own1"));
    EXPECT_THAT(readers.shortFiles(), testing::ElementsAre("own1"));
    ReadWriteScene writers;
    writers.before("refresh W", 1, [&] {
        writers.addWriter();
        throw std::bad_alloc();
    });
    EXPECT_THROW(writers.writer().tryAcquire(false), std::bad_alloc);
    EXPECT_EQ(0u, writers.countOf("remove W"));
    EXPECT_THAT(writers.shortFiles(), testing::ElementsAre("W"));
}

TEST(ReadWriteErrors, ARefreshOfTheGuardThatCannotBeStartedLeavesAsItIs)
{
    for (const bool writes : {false, true}) {
        ReadWriteScene scene;
        fake_timer::failNext();
        EXPECT_THROW(writes ? scene.writer().tryAcquire(false) : scene.reader().tryAcquire(false),
                     boost::thread_resource_error);
        expectIdle(scene);
    }
}

TEST(ReadWriteErrors, AFileSystemThatCannotListIsNotTakenForAnEmptyDirectory)
{
    ReadWriteScene readers;
    readers.before("anyMatch W", 1, [] { throw zvPermissionDenied("denied"); });
    EXPECT_THROW(readers.reader().tryAcquire(false), zvPermissionDenied);
    expectIdle(readers);
    for (const char* search : {"walk R*", "walk W", "anyMatch R*", "anyMatch W"}) {
        ReadWriteScene writers;
        writers.before(search, 1, [] { throw zvFileAccessError("unreadable"); });
        EXPECT_THROW(writers.writer().tryAcquire(false), zvFileAccessError) << search;
        expectIdle(writers);
    }
}

TEST(ReadWriteErrors, ADirectoryThatGoesWhileItIsWaitedFor)
{
    ReadWriteScene readers;
    readers.addWriter();
    readers.before("anyMatch W", 2, [&] {
        readers.dropWriter();
        readers.free(0);
        readers.fs().removeDirectory("D");
    });
    EXPECT_THROW(readers.reader().acquire(seconds(10), false), zvNoSuchDirectory);
    readers.fs().addDirectory("D");
    expectIdle(readers);
    ReadWriteScene writers;
    writers.addReader(1);
    writers.before("walk R*", 2, [&] {
        writers.dropReader(1);
        writers.free(0);
        writers.fs().removeDirectory("D");
    });
    EXPECT_THROW(writers.writer().acquire(seconds(10), false), zvNoSuchDirectory);
    writers.fs().addDirectory("D");
    expectIdle(writers);
}

TEST(ReadWriteErrors, WhatIsNotOfTheFamilyPassesUntouched)
{
    ReadWriteScene readers;
    readers.before("anyMatch W", 1, [] { throw std::bad_alloc(); });
    EXPECT_THROW(readers.reader().tryAcquire(false), std::bad_alloc);
    expectIdle(readers);
    ReadWriteScene writers;
    writers.before("anyMatch W", 1, [] { throw 42; });
    EXPECT_THROW(writers.writer().tryAcquire(false), int);
    expectIdle(writers);
}

TEST(ReadWriteErrors, AHeldLockIsNotHarmedByAFileSystemThatFails)
{
    ReadWriteScene scene;
    ASSERT_TRUE(scene.reader().tryAcquire(false));
    failByPlan(scene.fs(), FailurePlan(1, Persistence::forEver, Failure::permissionDenied));
    EXPECT_FALSE(scene.reader().tryAcquire(false));
    EXPECT_TRUE(scene.reader().isAcquired());
    EXPECT_TRUE(scene.reader().release());
    EXPECT_FALSE(scene.reader().isAcquired());
}

}  // namespace
