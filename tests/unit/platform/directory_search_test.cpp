#include "platform/directory.h"

#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <set>

namespace {

using namespace zorvel::test;
using zorvel::platform::DirectorySearch;
using zorvel::platform::EntryKind;

typedef std::set<std::string> Names;

/// dir\{file, sub\{inner}, link -> precious, to-file -> precious\file} and precious\{file of 8 bytes}.
class OpenDirectory : public testing::Test
{
protected:
    OpenDirectory()
    {
        for (const char* name : {"dir", "dir\\sub", "precious"})
            tree.directory(name);
        tree.file("precious\\file", "precious");
        tree.file("dir\\file", "123");
        tree.file("dir\\sub\\inner");
        tree.link("precious", "dir\\link");
        tree.link("precious\\file", "dir\\to-file");
    }

    std::filesystem::path native(const char* relative) const
    {
        std::string path = tree.path(relative);
        for (char& byte : path)
            byte = byte == '\\' ? '/' : byte;
        return path;
    }

    int open(const char* relative) { return search.openDirectory(tree.path(relative).c_str()); }

    /// All that is listed but the directory itself and its parent.
    Names rest()
    {
        Names names;
        while (const char* const name = search.next())
            names.insert(name);
        names.erase(".");
        names.erase("..");
        return names;
    }

    /// Goes on to the entry of a name.
    bool find(const std::string& wanted)
    {
        while (const char* const name = search.next()) {
            if (name == wanted)
                return true;
        }
        return false;
    }

    /// The size that is given for an entry; the code, negated and shifted, when there is none.
    long long sizeOf(const char* name)
    {
        std::int32_t bytes = 0;
        if (open("dir") != 0 || !find(name))
            return -1000000;
        const int code = search.size(bytes);
        return code == 0 ? bytes : -2000000 - code;
    }

    TemporaryTree tree;
    DirectorySearch search;
};

TEST_F(OpenDirectory, ListsAllEntries)
{
    ASSERT_EQ(open("dir"), 0);
    EXPECT_EQ(rest(), Names({"file", "sub", "link", "to-file"}));
    EXPECT_EQ(search.code(), 0);
    EXPECT_EQ(search.next(), nullptr);
}

TEST_F(OpenDirectory, RefusesWhatIsNoDirectoryItself)
{
    EXPECT_EQ(open("missing"), ENOENT);
    EXPECT_EQ(open("dir\\file"), ENOTDIR);
    EXPECT_EQ(open("dir\\link"), ENOTDIR);
    EXPECT_EQ(search.next(), nullptr);
    EXPECT_NE(search.openDirectory(nullptr), 0);
    EXPECT_NE(search.openDirectory(""), 0);
    EXPECT_EQ(search.next(), nullptr);
}

TEST_F(OpenDirectory, SaysWhatTheListingSays)
{
    std::map<std::string, EntryKind> kinds;
    ASSERT_EQ(open("dir"), 0);
    while (const char* const name = search.next())
        kinds[name] = search.listedKind();
    EXPECT_EQ(kinds["file"], EntryKind::file);
    EXPECT_EQ(kinds["sub"], EntryKind::directory);
    EXPECT_EQ(kinds["link"], EntryKind::none);
    EXPECT_EQ(kinds["to-file"], EntryKind::none);
}

TEST_F(OpenDirectory, ListsThatDirectoryWhateverHasItsNameLater)
{
    ASSERT_EQ(open("dir"), 0);
    std::filesystem::rename(native("dir"), native("away"));
    tree.directory("dir");
    tree.file("dir\\other");
    EXPECT_EQ(rest(), Names({"file", "sub", "link", "to-file"}));
}

TEST_F(OpenDirectory, ListsNothingAfterItIsClosed)
{
    ASSERT_EQ(open("dir"), 0);
    search.close();
    EXPECT_EQ(search.next(), nullptr);
    EXPECT_EQ(search.listedKind(), EntryKind::none);
    EXPECT_EQ(search.code(), 0);
}

TEST_F(OpenDirectory, ADirectoryThatIsGoneHasNoEntriesAndThatIsNoFailure)
{
    ASSERT_EQ(open("dir\\sub"), 0);
    std::filesystem::remove_all(native("dir/sub"));
    EXPECT_EQ(rest(), Names());
    EXPECT_EQ(search.code(), 0);
}

TEST_F(OpenDirectory, ASizeIsThatOfTheEntryGivenLast)
{
    EXPECT_EQ(sizeOf("file"), 3);
    EXPECT_EQ(sizeOf("to-file"), 8);
    EXPECT_EQ(sizeOf("sub"), 0);
    EXPECT_EQ(sizeOf("link"), 0);
}

TEST_F(OpenDirectory, ASizeIsTheLow32BitsSigned)
{
    std::filesystem::resize_file(native("dir\\file"), 0xC0000005ull);
    EXPECT_EQ(sizeOf("file"), -0x3FFFFFFBll);
}

TEST_F(OpenDirectory, ThereIsNoSizeWithoutAnEntry)
{
    std::int32_t bytes = 7;
    EXPECT_NE(search.size(bytes), 0);
    ASSERT_EQ(open("dir"), 0);
    EXPECT_EQ(search.size(bytes), ENOENT);
    ASSERT_TRUE(find("file"));
    std::filesystem::remove(native("dir\\file"));
    EXPECT_EQ(search.size(bytes), ENOENT);
    search.close();
    EXPECT_EQ(search.size(bytes), ENOENT);
    EXPECT_EQ(bytes, 7);
}

/// The file is asked for in the directory that is listed, not by its path.
TEST_F(OpenDirectory, ASizeIsThatInTheListedDirectoryWhateverHasItsNameLater)
{
    ASSERT_EQ(open("dir"), 0);
    ASSERT_TRUE(find("file"));
    std::filesystem::rename(native("dir"), native("away"));
    tree.directory("dir");
    tree.file("dir\\file", "longer than before");
    std::int32_t bytes = 0;
    EXPECT_EQ(search.size(bytes), 0);
    EXPECT_EQ(bytes, 3);
}

}  // namespace
