#include "tests/examples/small/example.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace zorvel::test;

namespace {

/// As other libraries than this one want it.
std::string directoryOf(const TemporaryTree& tree)
{
    std::string path = tree.root();
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

}  // namespace

TEST(LockDirectory, TakesTheDirectoryAndLeavesItAsItWas)
{
    TemporaryTree tree;
    const Outcome outcome = runExample("lock_directory", {tree.root()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "nobody else works in " + tree.root() + " now\n");
    EXPECT_TRUE(tree.names().empty());
    const Outcome failed = runExample("lock_directory", {tree.path("missing")});
    EXPECT_EQ(failed.status, 2);
    EXPECT_EQ(failed.output, "");
    EXPECT_NE(failed.errors.find("non-existent directory"), std::string::npos) << failed.errors;
}

TEST(Presence, IsSeenByOthersUntilItEnds)
{
    TemporaryTree tree;
    const Arguments file{tree.path("at-work")};
    Process worker(exampleCommand("presence", file));
    EXPECT_EQ(lineOf(worker), "at work");
    EXPECT_TRUE(tree.exists("at-work"));
    EXPECT_EQ(runExample("presence", file).output, "somebody else is at work\n");
    worker.writeLine("");
    EXPECT_EQ(worker.finish(), 0);
    EXPECT_TRUE(tree.names().empty());
    EXPECT_EQ(runExample("presence", file).output, "at work\n");
}

TEST(Presence, OfTheDeadIsToldFromThatOfTheLiving)
{
    TemporaryTree tree;
    tree.file("at-work");
    const Arguments file{tree.path("at-work")};
    EXPECT_EQ(runExample("presence", file).output, "somebody else is at work\n");
    tree.age("at-work", -100);
    const Outcome outcome = runExample("presence", file);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "somebody died at work\n");
    EXPECT_EQ(tree.names().size(), 1u);
}

TEST(Presence, WantsAFileInADirectory)
{
    TemporaryTree tree;
    const Outcome outcome = runExample("presence", {tree.path("missing\\at-work")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors.find("missing"), std::string::npos) << outcome.errors;
    EXPECT_EQ(runExample("presence", {}).status, 2);
}

TEST(SharedCounter, CountsAndLeavesNoLock)
{
    TemporaryTree tree;
    const std::string directory = directoryOf(tree);
    EXPECT_EQ(runExample("shared_counter", {directory}).output, "0\n");
    EXPECT_EQ(runExample("shared_counter", {directory, "add"}).output, "1\n");
    const Outcome outcome = runExample("shared_counter", {directory, "add"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "2\n");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(runExample("shared_counter", {directory}).output, "2\n");
    EXPECT_EQ(tree.names(), std::vector<std::string>{"count"});
}

TEST(SharedCounter, LosesNothingWhenSeveralAdd)
{
    TemporaryTree tree;
    const Arguments add{directoryOf(tree), "add"};
    Process first(exampleCommand("shared_counter", add));
    Process second(exampleCommand("shared_counter", add));
    Process third(exampleCommand("shared_counter", add));
    EXPECT_EQ(first.finish(), 0);
    EXPECT_EQ(second.finish(), 0);
    EXPECT_EQ(third.finish(), 0);
    EXPECT_EQ(tree.content("count").substr(0, 1), "3");
    EXPECT_EQ(tree.names(), std::vector<std::string>{"count"});
}

TEST(SharedCounter, WantsADirectory)
{
    TemporaryTree tree;
    const Outcome outcome = runExample("shared_counter", {directoryOf(tree) + "/missing", "add"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors.find("non-existent directory"), std::string::npos) << outcome.errors;
    EXPECT_EQ(runExample("shared_counter", {}).status, 2);
}
