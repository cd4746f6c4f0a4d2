#include <zorvel/errors.h>

#include "tests/unit/dirlock/scene.h"

#include <gmock/gmock.h>

// A level's file is the directory as it was given, "/.deploy_lock." and the
// level.

namespace {

using namespace zorvel::test;
using testing::ElementsAre;

std::string fileOfFreeLock(const std::string& directory)
{
    Scene scene(directory);
    EXPECT_TRUE(scene.lock().tryAcquire(true));
    EXPECT_EQ(1u, scene.fs().files().size());
    return scene.fs().files().at(0);
}

TEST(LockNames, TheDirectoryIsNotChanged)
{
    EXPECT_EQ("C:\\data/.deploy_lock.0", fileOfFreeLock("C:\\data"));
    EXPECT_EQ("C:\\data\\/.deploy_lock.0", fileOfFreeLock("C:\\data\\"));
    EXPECT_EQ("C:/data//sub /.deploy_lock.0", fileOfFreeLock("C:/data//sub "));
    EXPECT_EQ(" relative/.deploy_lock.0", fileOfFreeLock(" relative"));
    EXPECT_EQ("./.deploy_lock.0", fileOfFreeLock("."));
    EXPECT_EQ("/.deploy_lock.0", fileOfFreeLock(""));
}

/// The system would cut it at the NUL and mean another file: the lock's own
/// removal at the end would take that one.
TEST(LockNames, ADirectoryWithANulInItIsRefusedBeforeAnythingIsTouched)
{
    const std::string directory("D\0", 2);
    Scene scene(directory);
    scene.fs().addFile("D");
    try {
        scene.lock().tryAcquire(false);
        FAIL() << "a directory with a NUL in it was locked";
    } catch (const zvNoSuchDirectory&) {
    }
    EXPECT_TRUE(scene.fs().log().empty());
    EXPECT_TRUE(scene.fs().has("D"));
    EXPECT_FALSE(scene.lock().release());
}

TEST(LockNames, ADirectoryThatEndsInATrailByteIsNotChanged)
{
    EXPECT_EQ("C:\\\x95\x5c/.deploy_lock.0", fileOfFreeLock("C:\\\x95\x5c"));
}

TEST(LockNames, LevelsAreDecimalWithoutZerosInFront)
{
    Scene scene;
    for (int level = 0; level < 120; ++level)
        scene.take(level);
    scene.lock().acquire(boost::posix_time::milliseconds(5), true);
    const std::vector<std::string> log = scene.fs().log();
    EXPECT_EQ("exists D/.deploy_lock.9 -> true", log.at(9));
    EXPECT_EQ("exists D/.deploy_lock.10 -> true", log.at(10));
    EXPECT_EQ("exists D/.deploy_lock.100 -> true", log.at(100));
    EXPECT_EQ("create D/.deploy_lock.120 -> true", log.at(121));
}

TEST(LockNames, NoLevelIsMinusOne)
{
    Scene scene("C:\\data\\");
    scene.take(0);
    EXPECT_FALSE(scene.lock().tryAcquire(true));
    EXPECT_EQ("remove C:\\data\\/.deploy_lock.-1 now -> false", scene.fs().log().back());
}

TEST(LockNames, TheStalenessIsAskedInTheNormalisedDirectory)
{
    Scene scene("C:/data//sub");
    scene.fs().addDirectory("C:\\data\\sub");
    scene.take(0, 40);
    EXPECT_TRUE(scene.lock().acquire(boost::posix_time::seconds(1), true));
    EXPECT_THAT(scene.fs().log(), testing::Contains("isDirectory C:\\data\\sub -> true"));
    EXPECT_THAT(scene.fs().log(), testing::Contains(testing::StartsWith("create C:\\data\\sub\\.")));
    EXPECT_THAT(scene.fs().files(), ElementsAre("C:/data//sub/.deploy_lock.0"));
}

TEST(LockNames, TheConstantsAreWhatOthersRelyOn)
{
    EXPECT_EQ(5, zvDirectoryExclusiveLock::ACQUIRE_POLL_INTERVAL_MSEC);
    EXPECT_EQ(1000, zvDirectoryExclusiveLock::REFRESH_INTERVAL_MSEC);
    EXPECT_EQ(30, zvDirectoryExclusiveLock::STALE_TIMEOUT_SEC);
    const int& exported = zvDirectoryExclusiveLock::STALE_TIMEOUT_SEC;
    EXPECT_EQ(30, exported);
}

}  // namespace
