#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

using namespace zorvel::test;

namespace {

bool removeRF(const TemporaryTree& tree, const std::string& pattern)
{
    return zvRemoveRF(tree.path(pattern).c_str());
}

/// A directory with two levels below it.
void makeTree(const TemporaryTree& tree, const std::string& top)
{
    for (const char* name : {"", "\\one", "\\one\\two", "\\empty"})
        tree.directory(top + name);
    for (const char* name : {"\\a", "\\b", "\\one\\c", "\\one\\two\\d"})
        tree.file(top + name, "text");
}

}  // namespace

TEST(Remove, RemovesAFile)
{
    TemporaryTree tree;
    tree.file("file", "text");
    tree.file("file2", "text");
    EXPECT_TRUE(removeRF(tree, "file"));
    EXPECT_EQ(tree.names(), Names({"file2"}));
}

TEST(Remove, RemovesATree)
{
    TemporaryTree tree;
    makeTree(tree, "top");
    makeTree(tree, "top2");
    EXPECT_TRUE(removeRF(tree, "top"));
    EXPECT_EQ(tree.names(), Names({"top2"}));
    EXPECT_TRUE(removeRF(tree, "top2/"));
    EXPECT_EQ(tree.names(), Names());
}

TEST(Remove, RemovesEveryMatch)
{
    TemporaryTree tree;
    makeTree(tree, "match1");
    tree.file("match2");
    tree.directory("match3");
    tree.file("other");
    EXPECT_TRUE(removeRF(tree, "match?"));
    EXPECT_EQ(tree.names(), Names({"other"}));
    EXPECT_TRUE(removeRF(tree, "*"));
    EXPECT_EQ(tree.names(), Names());
}

TEST(Remove, IsContentWhenNothingMatches)
{
    TemporaryTree tree;
    tree.file("file");
    for (const char* name : {"missing", "missing\\deeper", "file\\below", "*.none"})
        EXPECT_TRUE(removeRF(tree, name)) << name;
    EXPECT_TRUE(removeRF(tree, std::string(300, 'x')));
    EXPECT_EQ(tree.names(), Names({"file"}));
}

TEST(Remove, NeverEmptiesTheCurrentDirectoryOrARoot)
{
    TemporaryTree tree;
    makeTree(tree, "top");
    const CurrentDirectory inside(tree.path("top"));
    for (const char* form : {".", ".\\", "./", "..", "..\\", ".\\.", "one\\..", "one\\.", "one\\..\\", "\\", "/"})
        EXPECT_TRUE(zvRemoveRF(form)) << form;
    EXPECT_EQ(tree.names("top"), Names({"a", "b", "empty", "one"}));
    EXPECT_EQ(tree.names("top\\one"), Names({"c", "two"}));
}

TEST(Remove, NeverMistakesTheParentForAnEntryOfItsName)
{
    TemporaryTree tree;
    tree.directory("same");
    tree.directory("same\\same");
    tree.file("same\\same\\file");
    for (const char* name : {"same\\.", "same\\..", "same\\same\\..", "same\\same\\."})
        EXPECT_TRUE(removeRF(tree, name)) << name;
    EXPECT_EQ(tree.names("same\\same"), Names({"file"}));
}

TEST(Remove, AcceptsRelativePatterns)
{
    TemporaryTree tree;
    makeTree(tree, "top");
    const CurrentDirectory inside(tree.path("top"));
    EXPECT_TRUE(zvRemoveRF("one"));
    EXPECT_TRUE(zvRemoveRF(".\\a"));
    EXPECT_EQ(tree.names("top"), Names({"b", "empty"}));
    EXPECT_TRUE(zvRemoveRF("*"));
    EXPECT_EQ(tree.names("top"), Names());
}

TEST(Remove, RefusesNullEmptyAndOverlongPatterns)
{
    TemporaryTree tree;
    tree.file("file");
    EXPECT_TRUE(zvRemoveRF(nullptr));
    EXPECT_TRUE(zvRemoveRF(""));
    EXPECT_TRUE(removeRF(tree, std::string(1025, '*')));
    EXPECT_TRUE(zvRemoveRF(std::string(1000000, '*').c_str()));
    EXPECT_EQ(tree.names(), Names({"file"}));
}

TEST(Remove, RefusesWildCardsInTheDirectoryPart)
{
    TemporaryTree tree;
    makeTree(tree, "top");
    EXPECT_TRUE(removeRF(tree, "t*\\a"));
    EXPECT_EQ(tree.names("top"), Names({"a", "b", "empty", "one"}));
}

TEST(Remove, ForcesWritePermission)
{
    TemporaryTree tree;
    tree.file("file");
    tree.makeReadOnly("file");
    EXPECT_TRUE(removeRF(tree, "file"));
    makeTree(tree, "top");
    for (const char* name : {"top\\a", "top\\one\\two\\d", "top\\one\\two", "top\\one", "top\\empty", "top"})
        tree.makeReadOnly(name);
    EXPECT_TRUE(removeRF(tree, "top"));
    EXPECT_EQ(tree.names(), Names());
}

TEST(Remove, EmptiesWideDirectories)
{
    TemporaryTree tree;
    tree.directory("top");
    for (int i = 0; i < 500; ++i)
        tree.file("top\\" + std::to_string(i));
    EXPECT_TRUE(removeRF(tree, "top"));
    EXPECT_FALSE(tree.exists("top"));
}
