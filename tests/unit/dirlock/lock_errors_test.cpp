#include <zorvel/errors.h>

#include "tests/support/failing_fs.h"
#include "tests/support/fake_timer.h"
#include "tests/unit/dirlock/scene.h"

#include <boost/thread/exceptions.hpp>

#include <gmock/gmock.h>

#include <stdexcept>
#include <typeindex>
#include <typeinfo>

// What leaves an acquire when the file system fails, and what stays behind.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using testing::IsEmpty;

const Failure failures[] = {Failure::noSuchDirectory, Failure::permissionDenied, Failure::fileAccessError,
                            Failure::fileNotFound};

struct Thrown
{
    std::type_index type = typeid(void);
    std::string text;
};

bool operator==(const Thrown& one, const Thrown& other)
{
    return one.type == other.type && one.text == other.text;
}

std::ostream& operator<<(std::ostream& out, const Thrown& thrown)
{
    return out << thrown.type.name() << ": " << thrown.text;
}

template <class F>
Thrown thrownBy(F f)
{
    try {
        f();
    } catch (const std::exception& error) {
        return Thrown{typeid(error), error.what()};
    }
    return Thrown();
}

Thrown thrownBy(Failure failure)
{
    return thrownBy([failure] { throwFailure(failure); });
}

/// The base itself, with the text of the derived one.
Thrown narrowed(Failure failure)
{
    return Thrown{typeid(zvFileBasedLockError), thrownBy(failure).text};
}

class LockErrorsOfAcquire : public testing::Test
{
protected:
    /// Acquires in a scene in which an operation fails.
    Thrown acquire(Scene& scene, const std::string& operation, std::size_t nth, Failure failure)
    {
        scene.before(operation, nth, [failure] { throwFailure(failure); });
        return thrownBy([&] { scene.lock().acquire(seconds(10), false); });
    }

    /// Nothing is held, nothing runs, and the lock works again.
    static void expectIdle(Scene& scene)
    {
        EXPECT_FALSE(scene.lock().isAcquired());
        EXPECT_EQ(0u, fake_timer::running());
        scene.free(0);
        EXPECT_THAT(scene.fs().files(), IsEmpty());
        EXPECT_TRUE(scene.lock().tryAcquire(false));
        EXPECT_TRUE(scene.lock().release());
    }
};

TEST_F(LockErrorsOfAcquire, InTheQueueLeaveAsTheyAre)
{
    for (const Failure failure : failures)
        for (const char* operation : {"exists #0", "create #0"}) {
            Scene scene;
            EXPECT_EQ(thrownBy(failure), acquire(scene, operation, 1, failure)) << operation;
            expectIdle(scene);
        }
    for (const Failure failure : failures)
        for (const char* operation : {"exists #1", "create #1"}) {
            Scene scene;
            scene.take(0);
            EXPECT_EQ(thrownBy(failure), acquire(scene, operation, 1, failure)) << operation;
            expectIdle(scene);
        }
}

TEST_F(LockErrorsOfAcquire, WhileQueuedAreNarrowedToTheBase)
{
    for (const Failure failure : failures)
        for (const char* operation : {"create #0", "refresh #1"}) {
            Scene scene;
            scene.take(0);
            EXPECT_EQ(narrowed(failure), acquire(scene, operation, 1, failure)) << operation;
            EXPECT_EQ(1u, scene.countOf("remove #1"));
            expectIdle(scene);
        }
}

TEST_F(LockErrorsOfAcquire, OfTheTakeoverAreNarrowedToTheBase)
{
    for (const Failure failure : failures) {
        Scene scene;
        scene.take(0, 40);
        EXPECT_EQ(narrowed(failure), acquire(scene, "refresh #0", 1, failure));
        expectIdle(scene);
    }
}

TEST_F(LockErrorsOfAcquire, OfTheStaleRemovalAreNarrowedToTheBase)
{
    for (const Failure failure : failures) {
        Scene scene;
        scene.take(0, 40);
        scene.refuse("refresh #0", 1);
        EXPECT_EQ(narrowed(failure), acquire(scene, "remove #0", 1, failure));
        expectIdle(scene);
    }
}

TEST_F(LockErrorsOfAcquire, OfTheJudgementAreNarrowedToTheBase)
{
    for (const Failure failure : {Failure::noSuchDirectory, Failure::permissionDenied, Failure::fileAccessError})
        for (const char* operation : {"isDirectory D", "create CAL", "mtime CAL", "mtime #0"}) {
            Scene scene;
            scene.take(0);
            EXPECT_EQ(narrowed(failure), acquire(scene, operation, 1, failure)) << operation;
            expectIdle(scene);
        }
}

TEST_F(LockErrorsOfAcquire, AFileMissingInTheJudgementIsNoError)
{
    for (const char* operation : {"mtime CAL", "mtime #0"}) {
        Scene scene;
        scene.take(0);
        scene.before("create #0", 3, [&] { scene.free(0); });
        EXPECT_EQ(Thrown(), acquire(scene, operation, 1, Failure::fileNotFound)) << operation;
        EXPECT_TRUE(scene.lock().isAcquired());
    }
}

TEST_F(LockErrorsOfAcquire, OfTheOwnRemovalAreNarrowedAndNoFileStays)
{
    for (const Failure failure : failures) {
        Scene scene;
        scene.take(0);
        scene.before("create #0", 2, [&] { scene.free(0); });
        EXPECT_EQ(narrowed(failure), acquire(scene, "remove #1", 1, failure));
        EXPECT_THAT(scene.fs().files(), IsEmpty());
        expectIdle(scene);
    }
}

TEST_F(LockErrorsOfAcquire, ADeniedCleanUpIsSwallowed)
{
    Scene scene;
    scene.take(0);
    scene.before("remove #1", 1, [] { throw zvPermissionDenied("the clean-up"); });
    EXPECT_EQ(narrowed(Failure::fileAccessError), acquire(scene, "mtime #0", 1, Failure::fileAccessError));
    EXPECT_TRUE(scene.isTaken(1));
    scene.free(1);
    expectIdle(scene);
}

TEST_F(LockErrorsOfAcquire, ACleanUpThatTimesOutIsNoError)
{
    Scene scene;
    scene.take(0);
    scene.refuse("remove #1");
    EXPECT_EQ(narrowed(Failure::fileAccessError), acquire(scene, "mtime #0", 1, Failure::fileAccessError));
    scene.free(1);
    expectIdle(scene);
}

TEST_F(LockErrorsOfAcquire, TheCleanUpHasTimeUntilTheDeadline)
{
    Scene scene;
    scene.take(0);
    acquire(scene, "mtime #0", 1, Failure::fileAccessError);
    EXPECT_EQ("remove #1 +9990000us -> true", scene.operations().back());
}

TEST_F(LockErrorsOfAcquire, OfTheFinalLockFileLeaveAsTheyAreAndNoFileStays)
{
    for (const Failure failure : failures) {
        Scene scene;
        EXPECT_EQ(thrownBy(failure), acquire(scene, "refresh #0", 1, failure));
        EXPECT_THAT(scene.fs().files(), IsEmpty());
        expectIdle(scene);
        Scene other;
        EXPECT_EQ(thrownBy(failure), acquire(other, "exists #0", 2, failure));
        EXPECT_THAT(other.fs().files(), IsEmpty());
        expectIdle(other);
    }
}

TEST_F(LockErrorsOfAcquire, ARefreshThatCannotBeStartedLeavesAsItIs)
{
    Scene scene;
    fake_timer::failNext();
    EXPECT_THROW(scene.lock().tryAcquire(false), boost::thread_resource_error);
    EXPECT_THAT(scene.fs().files(), IsEmpty());
    expectIdle(scene);
}

TEST_F(LockErrorsOfAcquire, OfTheFinalRemovalLeaveAsTheyAre)
{
    for (const Failure failure : failures) {
        Scene scene;
        scene.take(0);
        scene.before("remove #1", 1, [failure] { throwFailure(failure); });
        EXPECT_EQ(thrownBy(failure), thrownBy([&] { scene.lock().acquire(milliseconds(20), false); }));
        scene.free(1);
        expectIdle(scene);
        Scene full;
        full.take(0);
        full.before("remove #-1", 1, [failure] { throwFailure(failure); });
        EXPECT_EQ(thrownBy(failure), thrownBy([&] { full.lock().tryAcquire(false); }));
        expectIdle(full);
    }
}

TEST_F(LockErrorsOfAcquire, AMissingDirectoryIsNamedByTheFirstFile)
{
    Scene scene;
    scene.fs().removeDirectory("D");
    try {
        scene.lock().tryAcquire(false);
        FAIL() << "acquired a missing directory";
    } catch (const zvNoSuchDirectory& error) {
        EXPECT_STREQ("Tried to obtain a lock on a non-existent directory: D/.deploy_lock.0", error.what());
    }
    scene.fs().addDirectory("D");
    expectIdle(scene);
}

TEST_F(LockErrorsOfAcquire, ADirectoryThatGoesWhileQueuedIsNarrowed)
{
    Scene scene;
    scene.take(0);
    scene.before("create #0", 2, [&] {
        scene.free(0);
        scene.free(1);
        scene.fs().removeDirectory("D");
    });
    const Thrown thrown = thrownBy([&] { scene.lock().acquire(seconds(10), false); });
    EXPECT_EQ((Thrown{typeid(zvFileBasedLockError),
                      "Tried to obtain a lock on a non-existent directory: D/.deploy_lock.0"}),
              thrown);
}

TEST_F(LockErrorsOfAcquire, WhatIsNotOfTheFamilyPassesUntouched)
{
    Scene scene;
    scene.take(0);
    scene.before("mtime #0", 1, [] { throw std::out_of_range("boom"); });
    EXPECT_EQ((Thrown{typeid(std::out_of_range), "boom"}), thrownBy([&] { scene.lock().acquire(seconds(10), false); }));
    expectIdle(scene);
}

TEST_F(LockErrorsOfAcquire, AHeldLockIsNotHarmedByAFileSystemThatFails)
{
    Scene scene;
    ASSERT_TRUE(scene.lock().tryAcquire(false));
    failByPlan(scene.fs(), FailurePlan(1, Persistence::forEver, Failure::permissionDenied));
    EXPECT_TRUE(scene.lock().tryAcquire(false));
    EXPECT_TRUE(scene.lock().release());
    EXPECT_TRUE(scene.lock().isAcquired());
    EXPECT_TRUE(scene.lock().release());
    EXPECT_FALSE(scene.lock().isAcquired());
}

}  // namespace
