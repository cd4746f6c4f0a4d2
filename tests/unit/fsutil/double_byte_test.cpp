#include "tests/unit/fsutil/recorder.h"

#include <zorvel/paths.h>

#include "platform/files.h"

#include <gtest/gtest.h>

using namespace zorvel::test;

// In code pages with double-byte characters the two bytes of `name` are one character whose second byte has the value
// of '\'. In the others they are a character and a separator.
namespace {

const std::string name = "\x8F\x5C";

bool isOneCharacter()
{
    return qxIsMultiByteLead(0x8F);
}

std::string below(const std::string& directory, const std::string& entry)
{
    return directory + '\\' + entry;
}

}  // namespace

TEST(DoubleByte, DirectoriesAreCreatedUnderTheirWholeName)
{
    TemporaryTree tree;
    EXPECT_TRUE(zvMkdirP(tree.path(below(name, "inner" + name)).c_str()));
    const std::string onDisk = isOneCharacter() ? name : name.substr(0, 1);
    const std::string innerOnDisk = "inner" + onDisk;
    EXPECT_EQ(tree.names(), Names({onDisk}));
    EXPECT_TRUE(tree.exists(below(name, innerOnDisk)));
    EXPECT_TRUE(zvIsDirectory(tree.path(below(name, "inner" + name)).c_str()));
}

TEST(DoubleByte, FilesHaveTheirStatus)
{
    TemporaryTree tree;
    const std::string file = isOneCharacter() ? name : name.substr(0, 1);
    const std::string path = tree.path(file);
    tree.file(file, "12345");
    EXPECT_TRUE(zvFileExists(path.c_str()));
    EXPECT_EQ(zvGetFileSize(path.c_str()), 5);
    EXPECT_EQ(zvGetFilePermissions(path.c_str()) & 0xF080, 0x8080);
    tree.age(file, -100000);
    zorvel::platform::FileStatus status;
    ASSERT_EQ(zorvel::platform::fileStatus(path.c_str(), status), 0);
    EXPECT_EQ(status.modificationTime, tree.modificationTime(file));
    const unsigned short before = zvDisableWritePermission(path.c_str());
    EXPECT_TRUE(tree.isReadOnly(file));
    EXPECT_EQ(zvGetFilePermissions(path.c_str()) & 0x80, 0);
    EXPECT_EQ(zvSetFilePermissions(path.c_str(), before), 0);
    EXPECT_FALSE(tree.isReadOnly(file));
}

TEST(DoubleByte, DirectoriesHaveTheModeOfDirectories)
{
    TemporaryTree tree;
    const std::string directory = isOneCharacter() ? name : name.substr(0, 1);
    tree.directory(directory);
    EXPECT_EQ(zvGetFilePermissions(tree.path(directory).c_str()) & 0xF080, 0x4080);
    EXPECT_EQ(zvGetFileSize(tree.path(directory).c_str()), 0);
}

TEST(DoubleByte, WalkAndSizeEnterTheDirectory)
{
    TemporaryTree tree;
    const std::string directory = isOneCharacter() ? name : name.substr(0, 1);
    tree.directory(directory);
    tree.file(below(directory, "a"), "123");
    tree.file(below(directory, "b" + directory), "4567");
    EXPECT_EQ(found(tree, "*", 1),
              Names({"d:" + directory, "f:" + below(directory, "a"), "f:" + below(directory, "b" + directory)}));
    EXPECT_EQ(found(tree, below(directory, "b*")), Names({"f:" + below(directory, "b" + directory)}));
    EXPECT_EQ(found(tree, directory), Names({"d:" + directory}));
    EXPECT_EQ(zvGetDirectorySize(tree.path(directory).c_str()), 7u);
    EXPECT_EQ(zvGetDirectorySize(tree.path(directory + '\\').c_str()), 7u);
}

TEST(DoubleByte, SizeDoesNotCountNeighboursThatBeginAlike)
{
    TemporaryTree tree;
    const std::string directory = isOneCharacter() ? name : name.substr(0, 1);
    tree.directory(directory);
    tree.directory(directory + "x");
    tree.file(below(directory, "a"), "123");
    tree.file(below(directory + "x", "a"), "123456");
    tree.file(directory + "y", "1");
    EXPECT_EQ(zvGetDirectorySize(tree.path(directory).c_str()), 3u);
}

TEST(DoubleByte, RemovalTakesTheEntryAndNoOther)
{
    TemporaryTree tree;
    const std::string directory = isOneCharacter() ? name : name.substr(0, 1);
    tree.directory(directory);
    tree.directory(below(directory, directory));
    tree.file(below(directory, directory + "1"));
    tree.file(directory + "x");
    tree.makeReadOnly(below(directory, directory + "1"));
    EXPECT_TRUE(zvRemoveRF(tree.path(directory).c_str()));
    EXPECT_EQ(tree.names(), Names({directory + "x"}));
}

TEST(DoubleByte, RemovalWithASeparatorBehindTheName)
{
    TemporaryTree tree;
    const std::string directory = isOneCharacter() ? name : name.substr(0, 1);
    tree.directory(directory);
    tree.file(below(directory, "a"));
    EXPECT_TRUE(zvRemoveRF(tree.path(directory + '\\').c_str()));
    EXPECT_EQ(tree.names(), Names());
}

namespace {

bool noLeadByte(unsigned char)
{
    return false;
}

/// Another lead-byte test for the paths room, for a scope.
class ReplacedTest
{
public:
    explicit ReplacedTest(zvMultiByteLeadTest test) : m_before(zvSetIsMultiByteLead(test)) {}
    ~ReplacedTest() { zvSetIsMultiByteLead(m_before); }

    ReplacedTest(const ReplacedTest&) = delete;
    ReplacedTest& operator=(const ReplacedTest&) = delete;

private:
    zvMultiByteLeadTest m_before;
};

}  // namespace

TEST(DoubleByte, SizeDoesNotCountNeighboursUnderAReplacedTest)
{
    TemporaryTree tree;
    const std::string directory = isOneCharacter() ? name : name.substr(0, 1);
    tree.directory(directory);
    tree.file(below(directory, "a"), "123");
    tree.file(directory + "y", "1");
    const ReplacedTest replaced(&noLeadByte);
    EXPECT_EQ(zvGetDirectorySize(tree.path(directory).c_str()), 3u);
}

TEST(DoubleByte, WildCardsTakeWholeCharacters)
{
    TemporaryTree tree;
    const std::string pair = "\x83\x41";
    const std::string pairThenLetter = pair + "A";
    for (const std::string& file : {std::string("xA"), pair, pairThenLetter})
        tree.file(file);
    const bool isPair = qxIsMultiByteLead(0x83);
    EXPECT_EQ(found(tree, "?A"), isPair ? Names({"f:xA", "f:" + pairThenLetter}) : Names({"f:xA", "f:" + pair}));
    EXPECT_TRUE(zvRemoveRF(tree.path("*A").c_str()));
    EXPECT_EQ(tree.names(), isPair ? Names({pair}) : Names());
    EXPECT_TRUE(zvRemoveRF(tree.path(isPair ? "?" : "??").c_str()));
    EXPECT_EQ(tree.names(), Names());
}
