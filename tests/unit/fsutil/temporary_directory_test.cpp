#include <zorvel/fsutil.h>

#include "tests/support/child.h"
#include "tests/support/system_facts.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <boost/thread/barrier.hpp>
#include <boost/thread/thread.hpp>

#include <filesystem>
#include <iostream>
#include <set>

using namespace zorvel::test;
namespace fs = std::filesystem;

// The directory is chosen once in a process, so each case has a child of its own.
namespace {

fs::path standardPath(std::string path)
{
    for (char& byte : path)
        byte = byte == '\\' ? '/' : byte;
    return path;
}

/// Prints the directory; argument: the current directory to be in.
int showDirectory(const std::vector<std::string>& arguments)
{
    if (!arguments.empty())
        fs::current_path(standardPath(arguments[0]));
    std::cout << zvGetTempDir() << '\n';
    return 0;
}

const ChildMode showMode("show-temporary-directory", &showDirectory);

typedef std::vector<std::pair<std::string, std::string>> Variables;

/// What a child with these variables, and TEMP and TMP of no other values,
/// chooses.
std::string chosenWith(const Variables& variables, const std::vector<std::string>& arguments = {})
{
    ProcessOptions options;
    options.unset = {"TEMP", "TMP"};
    options.set = variables;
    const ChildResult child = runChild("show-temporary-directory", arguments, options);
    EXPECT_EQ(0, child.status) << child.errors;
    return child.output.substr(0, child.output.size() - 1);
}

std::string chosenFor(const std::string& value)
{
    return chosenWith({{"TEMP", value}});
}

}  // namespace

TEST(TemporaryDirectory, IsTheValueOfTEMP)
{
    EXPECT_EQ("C:\\Tmp\\", chosenFor("C:\\Tmp"));
    EXPECT_EQ("C:\\Tmp\\", chosenWith({{"TEMP", "C:\\Tmp"}, {"TMP", "D:/t/"}}));
}

TEST(TemporaryDirectory, IsTheValueOfTMPWithoutTEMP)
{
    EXPECT_EQ("D:/t\\", chosenWith({{"TMP", "D:/t/"}}));
}

TEST(TemporaryDirectory, OtherVariablesAreNotAsked)
{
    TemporaryTree tree;
    EXPECT_EQ(tree.root() + '\\', chosenWith({{"TMPDIR", "C:\\other"}, {"TEMPDIR", "C:\\other"}}, {tree.root()}));
}

TEST(TemporaryDirectory, EndsWithOneSeparatorMore)
{
    EXPECT_EQ("x\\", chosenFor("x"));
    EXPECT_EQ("x\\", chosenFor("x\\"));
    EXPECT_EQ("x\\", chosenFor("x/"));
    EXPECT_EQ("x\\\\", chosenFor("x\\\\"));
    EXPECT_EQ("x/\\", chosenFor("x//"));
    EXPECT_EQ("\\", chosenFor("\\"));
    EXPECT_EQ("\\", chosenFor("/"));
    EXPECT_EQ("C:\\", chosenFor("C:"));
}

TEST(TemporaryDirectory, AnEmptyValueIsTheRoot)
{
    EXPECT_EQ("\\", chosenWith({{"TEMP", ""}, {"TMP", "not asked"}}));
    EXPECT_EQ("\\", chosenWith({{"TMP", ""}}));
}

TEST(TemporaryDirectory, ValueIsTakenAsItIs)
{
    EXPECT_EQ(" a b \\", chosenFor(" a b "));
    EXPECT_EQ("..\\x/.\\", chosenFor("..\\x/."));
    EXPECT_EQ("%TMP%;*?\\", chosenFor("%TMP%;*?"));
}

/// As zvAddPathSep does it, also where the two bytes are one character.
TEST(TemporaryDirectory, LastByteIsLookedAtAlone)
{
    EXPECT_EQ("x\x8F\x5C", chosenFor("x\x8F\x5C"));
    EXPECT_EQ("x\x8F\x40\\", chosenFor("x\x8F\x40"));
}

TEST(TemporaryDirectory, AValueMayHave2560Bytes)
{
    const std::string longest(2560, 'x');
    EXPECT_EQ(longest + '\\', chosenFor(longest));
    EXPECT_EQ(std::string(2559, 'x') + '\\', chosenFor(std::string(2559, 'x') + '\\'));
    EXPECT_EQ(std::string(2559, 'x') + '\\', chosenFor(std::string(2559, 'x') + '/'));
}

TEST(TemporaryDirectory, ALongerValueCountsAsNotSet)
{
    TemporaryTree tree;
    for (const std::size_t size : {2561u, 2562u, 2563u, 10000u}) {
        const std::string tooLong(size, 'x');
        EXPECT_EQ("short\\", chosenWith({{"TEMP", tooLong}, {"TMP", "short"}})) << size;
        EXPECT_EQ(tree.root() + '\\', chosenWith({{"TMP", tooLong}}, {tree.root()})) << size;
        EXPECT_EQ(tree.root() + '\\', chosenWith({{"TEMP", tooLong}, {"TMP", tooLong}}, {tree.root()})) << size;
    }
    EXPECT_EQ("short\\", chosenWith({{"TEMP", std::string(2560, 'x') + '\\'}, {"TMP", "short"}}));
}

TEST(TemporaryDirectory, IsTheCurrentOneWithoutBoth)
{
    TemporaryTree tree;
    tree.directory("inner");
    EXPECT_EQ(tree.path("inner") + '\\', chosenWith({}, {tree.path("inner")}));
}

TEST(TemporaryDirectory, ARootAsTheCurrentOneStays)
{
    const std::string chosen = chosenWith({}, {fs::current_path().root_path().string()});
    EXPECT_EQ('\\', chosen.back());
    EXPECT_GE(3u, chosen.size());
    EXPECT_NE("\\\\", chosen);
}

namespace {

/// Changes everything on which the choice depends, after the first call.
int chooseTwice(const std::vector<std::string>& arguments)
{
    const char* const before = zvGetTempDir();
    const std::string text = before;
    setEnvironment("TEMP", "changed");
    setEnvironment("TMP", "changed");
    fs::current_path(standardPath(arguments.at(0)));
    const char* const after = zvGetTempDir();
    std::cout << text << '\n' << (before == after && text == after ? "the same" : after) << '\n';
    return 0;
}

const ChildMode chooseTwiceMode("choose-twice", &chooseTwice);

std::string chosenTwiceWith(const Variables& variables)
{
    TemporaryTree tree;
    ProcessOptions options;
    options.unset = {"TEMP", "TMP"};
    options.set = variables;
    return runChild("choose-twice", {tree.root()}, options).output;
}

}  // namespace

TEST(TemporaryDirectory, IsChosenOnce)
{
    EXPECT_EQ("first\\\nthe same\n", chosenTwiceWith({{"TEMP", "first"}}));
    EXPECT_EQ("first\\\nthe same\n", chosenTwiceWith({{"TMP", "first"}}));
    const std::string chosen = chosenTwiceWith({});
    EXPECT_NE(std::string::npos, chosen.find("\nthe same\n")) << chosen;
}

namespace {

/// The first call comes from eight threads at once.
int chooseInThreads(const std::vector<std::string>&)
{
    const unsigned count = 8;
    boost::barrier start(count);
    std::vector<const char*> chosen(count);
    boost::thread_group threads;
    for (const char*& mine : chosen)
        threads.create_thread([&start, &mine] {
            start.wait();
            mine = zvGetTempDir();
        });
    threads.join_all();
    std::cout << std::set<const char*>(chosen.begin(), chosen.end()).size() << ' ' << chosen[0] << '\n';
    return 0;
}

const ChildMode chooseInThreadsMode("choose-in-threads", &chooseInThreads);

}  // namespace

TEST(TemporaryDirectory, ThreadsMayChooseAtTheSameTime)
{
    ProcessOptions options;
    options.set = {{"TEMP", "shared"}};
    EXPECT_EQ("1 shared\\\n", runChild("choose-in-threads", {}, options).output);
}
