#include "tests/examples/small/example.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace zorvel::test;

namespace {

std::string paddedTo15(const std::string& number)
{
    return std::string(15 - number.size(), ' ') + number;
}

}  // namespace

TEST(DirectorySizes, TheLargestComesFirst)
{
    TemporaryTree tree;
    tree.directory("empty");
    tree.directory("small");
    tree.file("small\\a", "123");
    tree.directory("large");
    tree.file("large\\a", "1234");
    tree.directory("large\\below");
    tree.file("large\\below\\b", std::string(2000, 'b'));
    tree.file("file", std::string(5000, 'f'));
    const Outcome outcome = runExample("directory_sizes", {tree.root()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, paddedTo15("2004") + "  " + tree.path("large") + '\n' + paddedTo15("3") + "  " +
                                  tree.path("small") + '\n' + paddedTo15("0") + "  " + tree.path("empty") + '\n');
}

TEST(DirectorySizes, WantsADirectory)
{
    TemporaryTree tree;
    tree.file("file");
    for (const char* const name : {"file", "missing"}) {
        const Outcome outcome = runExample("directory_sizes", {tree.path(name)});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, tree.path(name) + " is no directory\n");
    }
}

TEST(ScratchFile, IsANewOneEachTime)
{
    TemporaryTree tree;
    ProcessOptions options;
    options.set = {{"TEMP", tree.root()}};
    const Outcome first = runExample("scratch_file", {}, options);
    const Outcome second = runExample("scratch_file", {}, options);
    EXPECT_EQ(first.status, 0) << first.errors;
    EXPECT_EQ(second.status, 0) << second.errors;
    const std::vector<std::string> names = tree.names();
    ASSERT_EQ(names.size(), 2u);
    EXPECT_NE(first.output, second.output);
    for (const Outcome& outcome : {first, second}) {
        const std::string wanted = outcome.output;
        EXPECT_TRUE(wanted == tree.path(names[0]) + '\n' || wanted == tree.path(names[1]) + '\n') << wanted;
    }
    for (const std::string& name : names) {
        EXPECT_EQ(name.size(), 8u);
        EXPECT_EQ(name.substr(0, 2), "tp");
        EXPECT_EQ(tree.content(name), "");
    }
}

TEST(ScratchFile, WantsADirectoryForTemporaryFiles)
{
    TemporaryTree tree;
    ProcessOptions options;
    options.set = {{"TEMP", tree.path("missing")}};
    const Outcome outcome = runExample("scratch_file", {}, options);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors.find(tree.path("missing")), std::string::npos) << outcome.errors;
}

TEST(Describe, TellsFilesDirectoriesAndNothingApart)
{
    TemporaryTree tree;
    tree.file("file", "12345");
    tree.file("kept", "");
    tree.makeReadOnly("kept");
    const Outcome outcome =
        runExample("describe", {tree.path("file"), tree.path("kept"), tree.path("missing"), tree.root()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    const std::vector<std::string> lines = linesOf(outcome.output);
    ASSERT_EQ(lines.size(), 4u) << outcome.output;
    EXPECT_EQ(lines[0], tree.path("file") + ": a file of 5 bytes");
    EXPECT_EQ(lines[1], tree.path("kept") + ": a file of 0 bytes, read-only");
    EXPECT_EQ(lines[2], tree.path("missing") + ": nothing");
    const std::string directory = tree.root() + ": a directory, with ";
    EXPECT_EQ(lines[3].substr(0, directory.size()), directory);
    EXPECT_GT(std::stoull(lines[3].substr(directory.size())), 0u) << lines[3];
}

TEST(EachOnce, PrintsWhatTwoPatternsMatchOnce)
{
    TemporaryTree tree;
    tree.file("one.txt");
    tree.file("two.txt");
    tree.directory("two");
    const Outcome outcome = runExample("each_once", {tree.path("two*"), tree.path("*.txt")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    std::vector<std::string> lines = linesOf(outcome.output);
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, (std::vector<std::string>{tree.path("one.txt"), tree.path("two"), tree.path("two.txt")}));
}

TEST(CleanBuild, LeavesTheFolderEmptyAndItsNeighbours)
{
    TemporaryTree tree;
    tree.directory("build");
    tree.directory("build\\below");
    tree.file("build\\below\\old", "old");
    tree.file("build-log");
    for (int run = 0; run < 2; ++run) {
        const Outcome outcome = runExample("clean_build", {tree.root()});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.output, tree.path("build") + '\n');
        EXPECT_EQ(tree.names(), (std::vector<std::string>{"build", "build-log"}));
        EXPECT_TRUE(tree.names("build").empty());
    }
}

TEST(CleanBuild, MakesTheDirectoryToo)
{
    TemporaryTree tree;
    EXPECT_EQ(runExample("clean_build", {tree.path("new\\project")}).status, 0);
    EXPECT_TRUE(tree.exists("new\\project\\build"));
    tree.file("file");
    const Outcome refused = runExample("clean_build", {tree.path("file")});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(refused.errors, tree.path("file\\build") + " cannot be created\n");
    EXPECT_EQ(runExample("clean_build", {}).status, 2);
}
