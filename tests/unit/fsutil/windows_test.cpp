#include "platform/directory.h"
#include "platform/windows/error_code.h"
#include "tests/support/child.h"
#include "tests/support/system_facts.h"
#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <system_error>

using namespace zorvel::test;

TEST(Windows, AFileThatIsOpenStaysReadOnlyAndTheRestGoes)
{
    TemporaryTree tree;
    for (const char* name : {"top", "top\\inner"})
        tree.directory(name);
    for (const char* name : {"top\\gone", "top\\inner\\gone", "top\\inner\\open"})
        tree.file(name, "text");
    tree.makeReadOnly("top\\inner\\open");
    tree.makeReadOnly("top\\inner");
    // Wine keeps no read-only attribute of a directory.
    const bool isDirectoryReadOnly = tree.isReadOnly("top\\inner");
    {
        std::ifstream open(standardPath(tree, "top\\inner\\open"));
        ASSERT_TRUE(open.good());
        EXPECT_FALSE(zvRemoveRF(tree.path("top").c_str()));
    }
    EXPECT_EQ(tree.names("top"), Names({"inner"}));
    EXPECT_EQ(tree.names("top\\inner"), Names({"open"}));
    EXPECT_TRUE(tree.isReadOnly("top\\inner\\open"));
    EXPECT_EQ(tree.isReadOnly("top\\inner"), isDirectoryReadOnly);
    EXPECT_TRUE(zvRemoveRF(tree.path("top").c_str()));
}

TEST(Windows, MatchesWithoutRegardToCaseAndTakesStarDotStarForEverything)
{
    TemporaryTree tree;
    tree.file("Name");
    tree.file("other.txt");
    EXPECT_EQ(found(tree, "NAME"), Names({"f:Name"}));
    EXPECT_EQ(found(tree, "n*"), Names({"f:Name"}));
    EXPECT_EQ(found(tree, "*.*"), Names({"f:Name", "f:other.txt"}));
    EXPECT_TRUE(zvRemoveRF(tree.path("NAME").c_str()));
    EXPECT_EQ(tree.names(), Names({"other.txt"}));
}

TEST(Windows, NamesOfDotsAndBlanksAreNoEntries)
{
    TemporaryTree tree;
    tree.directory("same");
    tree.directory("same\\same");
    tree.file("same\\same\\file");
    for (const char* name : {"same\\...", "same\\. ", "same\\.. ", "same\\ ", "same\\. ."}) {
        EXPECT_EQ(found(tree, name), Names()) << name;
        EXPECT_TRUE(zvRemoveRF(tree.path(name).c_str())) << name;
    }
    EXPECT_EQ(tree.names("same\\same"), Names({"file"}));
}

TEST(Windows, WhatLiesBelowThePathsThatTheSystemTakesStaysAndTheRestGoes)
{
    TemporaryTree tree;
    tree.directory("deep");
    tree.file("deep\\gone");
    // A path in this form has no limit.
    const std::filesystem::path deep("\\\\?\\" + tree.path("deep"));
    std::filesystem::path lowest(deep);
    for (int i = 0; i < 3; ++i)
        lowest /= std::string(100, 'n');
    std::filesystem::create_directories(lowest);
    std::ofstream(lowest / "kept") << "text";
    EXPECT_FALSE(zvRemoveRF(tree.path("deep").c_str()));
    EXPECT_TRUE(std::filesystem::exists(lowest / "kept"));
    EXPECT_FALSE(tree.exists("deep\\gone"));
    for (std::filesystem::path left = lowest / "kept"; left != deep; left = left.parent_path())
        EXPECT_TRUE(std::filesystem::remove(left)) << left;
}

namespace {

/// A path that the system takes literally and at any length.
std::filesystem::path literalPath(const TemporaryTree& tree, const std::string& relative)
{
    return std::filesystem::path("\\\\?\\" + tree.path(relative));
}

}  // namespace

TEST(Windows, NamesThatTheSystemDoesNotTakeLiterallyStay)
{
    for (const char* name : {"victim ", "victim."}) {
        TemporaryTree tree;
        tree.directory("top");
        tree.file("top\\gone");
        std::ofstream(literalPath(tree, "top") / name) << "text";
        EXPECT_FALSE(zvRemoveRF(tree.path("top\\vic*").c_str())) << name;
        EXPECT_TRUE(std::filesystem::exists(literalPath(tree, "top") / name)) << name;
        tree.file("top\\victim");
        EXPECT_FALSE(zvRemoveRF(tree.path("top").c_str())) << name;
        EXPECT_TRUE(std::filesystem::exists(literalPath(tree, "top") / name)) << name;
        EXPECT_FALSE(tree.exists("top\\gone")) << name;
        EXPECT_TRUE(std::filesystem::remove(literalPath(tree, "top") / name)) << name;
    }
}

TEST(Windows, ANeighbourDoesNotGoInThePlaceOfANameThatIsNotTakenLiterally)
{
    TemporaryTree tree;
    tree.directory("top");
    tree.file("top\\victim", "precious");
    std::filesystem::create_directory(literalPath(tree, "top") / "victim ");
    zorvel::platform::RemovalDirectory top;
    zorvel::platform::RemovalDirectory child;
    ASSERT_EQ(top.open(tree.path("top").c_str()), 0);
    EXPECT_EQ(top.kind("victim "), zorvel::platform::EntryKind::file);
    EXPECT_EQ(top.kind("nothing."), zorvel::platform::EntryKind::file);
    EXPECT_EQ(top.removeFile("victim "), EACCES);
    EXPECT_EQ(top.removeDirectory("victim ", nullptr), EACCES);
    EXPECT_EQ(child.openChild(top, "victim "), EACCES);
    EXPECT_EQ(tree.content("top\\victim"), "precious");
    EXPECT_TRUE(std::filesystem::remove(literalPath(tree, "top") / "victim "));
}

TEST(Windows, NamesThatTheCodePageLacksStayAndAreNotWalked)
{
    TemporaryTree tree;
    tree.directory("top");
    tree.file("top\\plain", "12");
    // Thai; and a letter that the system would turn into a plain 'A' or 'O' of another file.
    for (const wchar_t* name : {L"\u0E01", L"\u0100", L"\u01D1"}) {
        const std::filesystem::path foreign = literalPath(tree, "top") / name;
        std::ofstream(foreign) << "text";
        EXPECT_EQ(found(tree, "top\\*"), Names({"f:top\\plain"}));
        EXPECT_EQ(zvGetDirectorySize(tree.path("top").c_str()), 2u);
        EXPECT_FALSE(zvRemoveRF(tree.path("top\\*").c_str()));
        EXPECT_FALSE(tree.exists("top\\plain"));
        for (const char* neighbour : {"top\\plain", "top\\A", "top\\O"})
            tree.file(neighbour, "12");
        EXPECT_FALSE(zvRemoveRF(tree.path("top").c_str()));
        EXPECT_TRUE(std::filesystem::remove(foreign));
        EXPECT_TRUE(tree.exists("top"));
        tree.file("top\\plain", "12");
    }
}

TEST(Windows, OnlyStarAndQuestionMarkAreWildCards)
{
    TemporaryTree tree;
    for (const char* name : {"name", "name.txt"})
        tree.file(name);
    for (const char* pattern : {"<", "name<", "na>e", ">>>>", "name\"txt", "name|", "*<", "<*", "*|"}) {
        EXPECT_EQ(found(tree, pattern), Names()) << pattern;
        EXPECT_TRUE(zvRemoveRF(tree.path(pattern).c_str())) << pattern;
    }
    EXPECT_EQ(tree.names(), Names({"name", "name.txt"}));
}

namespace {

const char* const renamed[][2] = {{"top\\sub", "top\\other"},
                                  {"top\\sub\\inner", "top\\inner"},
                                  {"top\\sub", "precious\\sub"},
                                  {"precious\\inner", "top\\inner"}};

/// Renames directories of the tree, out of it and back again until it is told
/// to stop, and says how often that was done.
int renameAgainAndAgain(const std::vector<std::string>& arguments)
{
    const std::filesystem::path root(arguments.at(0));
    std::error_code error;
    int count = 0;
    for (int i = 0; i < 1000000 && !std::filesystem::exists(root / "stop"); ++i) {
        for (const auto& pair : renamed) {
            for (const int from : {0, 1}) {
                std::filesystem::rename(root / pair[from], root / pair[1 - from], error);
                count += error ? 0 : 1;
            }
        }
    }
    std::printf("%d\n", count);
    return 0;
}

const ChildMode renaming("rename-again-and-again", &renameAgainAndAgain);

}  // namespace

TEST(Windows, RemovalStaysInItsTreeWhileAnotherProcessRenamesInIt)
{
    TemporaryTree tree;
    const Names kept = {"precious\\a", "precious\\keep\\a", "precious\\keep\\keep\\b"};
    for (const char* name : {"precious", "precious\\keep", "precious\\keep\\keep"})
        tree.directory(name);
    for (const std::string& name : kept)
        tree.file(name, "precious");
    Process child(childCommand("rename-again-and-again", {tree.root()}));
    std::error_code busy;
    for (int round = 0; round < 60; ++round) {
        for (const char* directory : {"top\\sub\\inner\\deep", "top\\more"})
            std::filesystem::create_directories(standardPath(tree, directory), busy);
        for (const char* name : {"top\\a", "top\\sub\\a", "top\\sub\\inner\\a", "top\\sub\\inner\\deep\\a"})
            std::ofstream(standardPath(tree, name)) << "text";
        zvRemoveRF(tree.path("top").c_str());
    }
    tree.file("stop");
    std::string output;
    EXPECT_EQ(child.finish(&output), 0);
    EXPECT_GT(std::atoi(output.c_str()), 0);
    for (const std::string& name : kept)
        EXPECT_EQ(tree.content(name), "precious") << name;
    EXPECT_TRUE(zvRemoveRF(tree.path("top").c_str()));
}

TEST(Windows, WhatIsForbiddenIsNotMissing)
{
    using zorvel::platform::windows::codeOfLookup;
    EXPECT_EQ(codeOfLookup(codeOfDeniedAccess()), EACCES);
    EXPECT_EQ(codeOfLookup(codeOfMissingFile()), ENOENT);
    EXPECT_EQ(codeOfLookup(0xFFFFFFFF), EIO);
}
