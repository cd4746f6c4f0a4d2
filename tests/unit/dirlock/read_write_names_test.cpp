#include <zorvel/errors.h>

#include "tests/support/fake_timer.h"
#include "tests/unit/dirlock/read_write_scene.h"

#include <gmock/gmock.h>

// The names of the files: the normalised directory and a name of the lock,
// joined by one separator, '\' on every system. The guard's separator is '/'.

namespace {

using namespace zorvel::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

std::string fileOfWriter(const std::string& directory, const std::string& normalised)
{
    ReadWriteScene scene(directory);
    scene.fs().addDirectory(normalised);
    EXPECT_TRUE(scene.writer().tryAcquire(true));
    EXPECT_EQ(1u, scene.fs().files().size());
    return scene.fs().files().at(0);
}

std::string fileOfReader(const std::string& directory, const std::string& normalised)
{
    ReadWriteScene scene(directory);
    scene.fs().addDirectory(normalised);
    EXPECT_TRUE(scene.reader().tryAcquire(true));
    EXPECT_EQ(1u, scene.fs().files().size());
    return scene.fs().files().at(0);
}

TEST(ReadWriteNames, OneSeparatorStandsBetween)
{
    const struct
    {
        const char* directory;
        const char* normalised;
        const char* joined;
    } cases[] = {
        {"C:\\data", "C:\\data", "C:\\data\\"},
        {"C:\\data\\", "C:\\data", "C:\\data\\"},
        {"C:/data//sub", "C:\\data\\sub", "C:\\data\\sub\\"},
        {"relative", "relative", "relative\\"},
        {".", ".", ".\\"},
    };
    for (const auto& each : cases) {
        const std::string joined = each.joined;
        EXPECT_EQ(joined + ".deploy_write_lock", fileOfWriter(each.directory, each.normalised));
        EXPECT_THAT(fileOfReader(each.directory, each.normalised), StartsWith(joined + ".deploy_read_lock."));
    }
}

TEST(ReadWriteNames, AReadersNumberIsUnsignedDecimal)
{
    const std::string beginning = "C:\\data\\.deploy_read_lock.";
    const std::string number = fileOfReader("C:\\data", "C:\\data").substr(beginning.size());
    EXPECT_FALSE(number.empty());
    EXPECT_EQ(std::string::npos, number.find_first_not_of("0123456789"));
    EXPECT_EQ(std::to_string(std::stoul(number)), number);
    EXPECT_LT(std::stoul(number), 2038074743ul);
}

TEST(ReadWriteNames, TheWriterLooksForAllNumbers)
{
    ReadWriteScene scene("C:/data//sub");
    scene.fs().addDirectory("C:\\data\\sub");
    ASSERT_TRUE(scene.writer().tryAcquire(true));
    EXPECT_THAT(scene.fs().log(),
                testing::IsSupersetOf({"findMatchingFilesAndDirs C:\\data\\sub\\.deploy_read_lock.* 0 false -> 0",
                                       "findMatchingFilesAndDirs C:\\data\\sub\\.deploy_write_lock 0 false -> 0",
                                       "anyMatch C:\\data\\sub\\.deploy_read_lock.* -> false",
                                       "anyMatch C:\\data\\sub\\.deploy_write_lock -> false"}));
}

TEST(ReadWriteNames, TheGuardIsInTheNormalisedDirectory)
{
    for (const bool writes : {false, true}) {
        ReadWriteScene scene("C:/data//sub");
        scene.fs().addDirectory("C:\\data\\sub");
        EXPECT_TRUE(writes ? scene.writer().tryAcquire(true) : scene.reader().tryAcquire(true));
        EXPECT_EQ("exists C:\\data\\sub/.deploy_lock.0 -> false", scene.fs().log().at(0));
    }
}

TEST(ReadWriteNames, TheStalenessIsAskedInTheNormalisedDirectory)
{
    ReadWriteScene scene("C:/data//sub");
    scene.fs().addDirectory("C:\\data\\sub");
    scene.fs().addFile("C:\\data\\sub\\.deploy_write_lock", 40);
    EXPECT_TRUE(scene.reader().tryAcquire(true));
    EXPECT_THAT(scene.fs().log(), testing::Contains("isDirectory C:\\data\\sub -> true"));
}

TEST(ReadWriteNames, AnEmptyDirectoryIsRefusedBeforeAnythingIsTouched)
{
    ReadWriteScene scene("");
    EXPECT_THROW(scene.reader().tryAcquire(false), zvNoSuchDirectory);
    EXPECT_THROW(scene.writer().tryAcquire(false), zvNoSuchDirectory);
    EXPECT_THAT(scene.operations(), IsEmpty());
    EXPECT_FALSE(scene.reader().isAcquired());
    EXPECT_FALSE(scene.writer().release());
}

/// The system would cut it at the NUL and mean another directory.
TEST(ReadWriteNames, ADirectoryWithANulInItIsRefusedBeforeAnythingIsTouched)
{
    const std::string directory("D\0", 2);
    ReadWriteScene scene(directory);
    scene.fs().addDirectory("D");
    EXPECT_THROW(scene.reader().tryAcquire(false), zvNoSuchDirectory);
    EXPECT_THROW(scene.writer().tryAcquire(false), zvNoSuchDirectory);
    EXPECT_THAT(scene.operations(), IsEmpty());
    EXPECT_FALSE(scene.reader().release());
    EXPECT_FALSE(scene.writer().isAcquired());
    EXPECT_FALSE(scene.writer().tryDowngrade().isAcquired());
}

/// A search below such a directory finds nobody, whoever is there.
TEST(ReadWriteNames, ADirectoryWithAWildCardIsRefusedBeforeAnythingIsTouched)
{
    for (const char* directory : {"D*", "*", "D*\\sub"}) {
        ReadWriteScene scene(directory);
        EXPECT_THROW(scene.reader().tryAcquire(false), zvFileAccessError) << directory;
        EXPECT_THROW(scene.writer().tryAcquire(false), zvFileAccessError) << directory;
        EXPECT_THAT(scene.operations(), IsEmpty());
        EXPECT_FALSE(scene.reader().isAcquired());
        EXPECT_FALSE(scene.writer().release());
        EXPECT_FALSE(scene.writer().tryDowngrade().isAcquired());
    }
}

/// Patterns of up to 1024 bytes are searched for: the directory, a separator
/// and ".deploy_read_lock.*".
TEST(ReadWriteNames, ADirectoryTooLongToSearchIsRefusedBeforeAnythingIsTouched)
{
    const std::size_t longest = 1024 - std::string("\\.deploy_read_lock.*").size();
    ReadWriteScene scene(std::string(longest, 'd'));
    EXPECT_TRUE(scene.reader().tryAcquire(false));
    EXPECT_TRUE(scene.reader().release());
    EXPECT_TRUE(scene.writer().tryAcquire(false));
    EXPECT_TRUE(scene.writer().release());
    for (const std::size_t length : {longest + 1, longest + 100, std::size_t(100000)}) {
        ReadWriteScene tooLong(std::string(length, 'd'));
        EXPECT_THROW(tooLong.reader().tryAcquire(false), zvFileAccessError) << length;
        EXPECT_THROW(tooLong.writer().tryAcquire(false), zvFileAccessError) << length;
        EXPECT_THAT(tooLong.operations(), IsEmpty());
        EXPECT_FALSE(tooLong.reader().release());
    }
}

TEST(ReadWriteNames, AMissingDirectoryIsNamedByTheGuard)
{
    ReadWriteScene scene;
    scene.fs().removeDirectory("D");
    for (const bool writes : {false, true}) {
        try {
            writes ? scene.writer().tryAcquire(false) : scene.reader().tryAcquire(false);
            FAIL() << "acquired a missing directory";
        } catch (const zvNoSuchDirectory& error) {
            EXPECT_STREQ("Tried to obtain a lock on a non-existent directory: D/.deploy_lock.0", error.what());
        }
    }
    scene.fs().addDirectory("D");
    EXPECT_TRUE(scene.reader().tryAcquire(false));
    EXPECT_EQ(1u, fake_timer::running());
}

}  // namespace
