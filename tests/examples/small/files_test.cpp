#include "tests/examples/small/example.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <string>

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
    EXPECT_EQ(outcome.output, paddedTo15("2004") + "  " + tree.path("large") + '\n' +
                              paddedTo15("3") + "  " + tree.path("small") + '\n' +
                              paddedTo15("0") + "  " + tree.path("empty") + '\n');
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
