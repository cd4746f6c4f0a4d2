#include "tests/examples/small/example.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace zorvel::test;

namespace {

/// A name that no other run uses.
class OneAtATime : public testing::Test
{
protected:
    std::unique_ptr<Process> start(const Arguments& more = {}) const
    {
        Arguments arguments{tree.root()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return std::unique_ptr<Process>(new Process(exampleCommand("one_at_a_time", arguments)));
    }

    const TemporaryTree tree;
};

}  // namespace

TEST_F(OneAtATime, TheSecondWaitsForTheFirst)
{
    const std::unique_ptr<Process> first = start();
    EXPECT_EQ(lineOf(*first), "it is mine");
    const std::unique_ptr<Process> second = start();
    EXPECT_EQ(lineOf(*second), "waiting: somebody else has it");
    first->writeLine("");
    EXPECT_EQ(lineOf(*first), "it is free");
    EXPECT_EQ(first->finish(), 0);
    EXPECT_EQ(lineOf(*second), "it is mine");
    second->writeLine("");
    EXPECT_EQ(lineOf(*second), "it is free");
    EXPECT_EQ(second->finish(), 0);
}

TEST_F(OneAtATime, GivesItBackAfterSomeSeconds)
{
    const std::unique_ptr<Process> first = start({"1"});
    EXPECT_EQ(lineOf(*first), "it is mine");
    const std::unique_ptr<Process> second = start({"0"});
    EXPECT_EQ(lineOf(*first), "it is free");
    std::string line = lineOf(*second);
    if (line == "waiting: somebody else has it")
        line = lineOf(*second);
    EXPECT_EQ(line, "it is mine");
    EXPECT_EQ(lineOf(*second), "it is free");
    EXPECT_EQ(first->finish(), 0);
    EXPECT_EQ(second->finish(), 0);
}

TEST_F(OneAtATime, IsFreeOnceNobodyHasItOpen)
{
    {
        const std::unique_ptr<Process> killed = start();
        EXPECT_EQ(lineOf(*killed), "it is mine");
    }
    const std::unique_ptr<Process> next = start({"0"});
    EXPECT_EQ(lineOf(*next), "it is mine");
    EXPECT_EQ(next->finish(), 0);
}

TEST_F(OneAtATime, SaysWhyItCannotBeOpened)
{
    const Outcome outcome = runExample("one_at_a_time", {std::string(32768, 'n'), "0"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors, "");
    EXPECT_EQ(runExample("one_at_a_time", {}).status, 2);
}
