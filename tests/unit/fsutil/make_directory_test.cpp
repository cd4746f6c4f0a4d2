#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

using namespace zorvel::test;

TEST(MakeDirectory, CreatesMissingParents)
{
    TemporaryTree tree;
    tree.directory("a");
    EXPECT_TRUE(zvMkdirP(tree.path("a\\b\\c").c_str()));
    EXPECT_TRUE(zvIsDirectory(tree.path("a\\b\\c").c_str()));
    EXPECT_TRUE(zvMkdirP(tree.path("a\\b\\c").c_str()));
}

TEST(MakeDirectory, UnifiesSeparatorsAndDropsBlanksAround)
{
    TemporaryTree tree;
    EXPECT_TRUE(zvMkdirP(("  " + tree.path("a//b/ ")).c_str()));
    EXPECT_EQ(tree.names("a"), Names({"b"}));
    EXPECT_TRUE(zvMkdirP((tree.path("a/c/\\/d\\\\")).c_str()));
    EXPECT_EQ(tree.names("a"), Names({"b", "c"}));
    EXPECT_EQ(tree.names("a\\c"), Names({"d"}));
}

TEST(MakeDirectory, FailsWhereAFileIsInTheWay)
{
    TemporaryTree tree;
    tree.directory("a");
    tree.file("a\\b", "text");
    EXPECT_FALSE(zvMkdirP(tree.path("a\\b").c_str()));
    EXPECT_FALSE(zvMkdirP(tree.path("a\\b\\c").c_str()));
    EXPECT_EQ(tree.content("a\\b"), "text");
}

TEST(MakeDirectory, LeavesWhatWasCreatedBeforeAFailure)
{
    TemporaryTree tree;
    EXPECT_FALSE(zvMkdirP(tree.path("a\\b\\" + std::string(300, 'x') + "\\c").c_str()));
    EXPECT_EQ(tree.names("a"), Names({"b"}));
    EXPECT_EQ(tree.names("a\\b"), Names());
}

TEST(MakeDirectory, CreatesRelativePaths)
{
    TemporaryTree tree;
    const CurrentDirectory inside(tree.root());
    EXPECT_TRUE(zvMkdirP("one\\two"));
    EXPECT_TRUE(zvMkdirP(".\\three"));
    EXPECT_TRUE(zvMkdirP("one/../four"));
    EXPECT_TRUE(zvMkdirP("."));
    EXPECT_EQ(tree.names(), Names({"four", "one", "three"}));
    EXPECT_EQ(tree.names("one"), Names({"two"}));
}

TEST(MakeDirectory, AcceptsWhatNeedsNoCreation)
{
    EXPECT_TRUE(zvMkdirP(""));
    EXPECT_TRUE(zvMkdirP(" \t "));
    EXPECT_TRUE(zvMkdirP("\\"));
    EXPECT_TRUE(zvMkdirP(hasDrives() ? "C:/" : "/"));
    EXPECT_TRUE(zvMkdirP(hasDrives() ? "C:" : "."));
}

TEST(MakeDirectory, NeverCreatesServerAndShare)
{
    EXPECT_TRUE(zvMkdirP("\\\\"));
    EXPECT_TRUE(zvMkdirP("\\\\zorvel-no-such-server"));
    EXPECT_TRUE(zvMkdirP("//zorvel-no-such-server/share/"));
    EXPECT_FALSE(zvFileOrDirExists("\\zorvel-no-such-server"));
    EXPECT_FALSE(zvMkdirP("\\\\zorvel-no-such-server\\share\\x"));
}

TEST(MakeDirectory, RefusesNullAndOverlongPaths)
{
    TemporaryTree tree;
    EXPECT_FALSE(zvMkdirP(nullptr));
    std::string path = tree.root();
    while (path.size() < 100000)
        path += '\\' + std::string(200, 'n');
    EXPECT_FALSE(zvMkdirP(path.c_str()));
}

TEST(MakeDirectory, FollowsLinksToDirectories)
{
    TemporaryTree tree;
    tree.directory("target");
    tree.link("target", "link");
    EXPECT_TRUE(zvMkdirP(tree.path("link\\new").c_str()));
    EXPECT_EQ(tree.names("target"), Names({"new"}));
}

TEST(MakeDirectory, NetworkPathsOfServerAndShareAloneAreContent)
{
    TemporaryTree tree;
    const CurrentDirectory inside(tree.root());
    EXPECT_TRUE(zvMkdirP("\\\\zorvel-no-such-server\\share"));
    EXPECT_EQ(tree.names(), Names());
    EXPECT_FALSE(zvFileOrDirExists("\\\\zorvel-no-such-server\\share"));
}

// Component by component: a name of dots below what was just made is there, and what a path leads through is made too,
// also where the system would find the goal without it.
TEST(MakeDirectory, WalksThroughNamesOfDots)
{
    TemporaryTree tree;
    tree.directory("goal");
    EXPECT_TRUE(zvMkdirP(tree.path("new\\.\\below").c_str()));
    EXPECT_EQ(tree.names("new"), Names({"below"}));
    EXPECT_TRUE(zvMkdirP(tree.path("through\\..\\goal").c_str()));
    EXPECT_EQ(tree.names(), Names({"goal", "new", "through"}));
}
