#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <fstream>

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
