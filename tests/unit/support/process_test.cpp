#include "tests/support/child.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

using zorvel::test::childCommand;
using zorvel::test::ChildMode;
using zorvel::test::ChildResult;
using zorvel::test::Process;
using zorvel::test::ProcessOptions;
using zorvel::test::runChild;

int printArguments(const std::vector<std::string>& arguments)
{
    for (const std::string& argument : arguments)
        std::cout << '[' << argument << "]\n";
    std::cerr << arguments.size() << " arguments\n";
    return 7;
}
const ChildMode argumentsMode("arguments", &printArguments);

int printVariables(const std::vector<std::string>& names)
{
    for (const std::string& name : names) {
        const char* const value = std::getenv(name.c_str());
        std::cout << name << '=' << (value ? value : "(none)") << '\n';
    }
    return 0;
}
const ChildMode variablesMode("variables", &printVariables);

int echoLines(const std::vector<std::string>&)
{
    std::string line;
    while (std::getline(std::cin, line))
        std::cout << "got " << line << std::endl;
    return 0;
}
const ChildMode echoMode("echo", &echoLines);

int flood(const std::vector<std::string>&)
{
    for (int line = 0; line < 20000; ++line)
        std::fprintf(stderr, "a line of standard error\n");
    std::cout << "done" << std::endl;
    return 0;
}
const ChildMode floodMode("flood", &flood);

TEST(Child, ReturnsStatusOutputAndErrors)
{
    const ChildResult result = runChild("arguments", {"one"});
    EXPECT_EQ(7, result.status);
    EXPECT_EQ("[one]\n", result.output);
    EXPECT_EQ("1 arguments\n", result.errors);
}

TEST(Child, ArgumentsArriveAsTheyAre)
{
    const ChildResult result =
        runChild("arguments", {"", "a b", "say \"x\"", "end\\", "a\\\"b\\\\", "*", "?.cpp", "'"});
    EXPECT_EQ("[]\n[a b]\n[say \"x\"]\n[end\\]\n[a\\\"b\\\\]\n[*]\n[?.cpp]\n[']\n", result.output);
}

TEST(Child, UnknownModeFails)
{
    EXPECT_EQ(127, runChild("no such mode").status);
}

TEST(Child, VariablesAreSetAndTakenOut)
{
    ProcessOptions outer;
    outer.set = {{"ZORVEL_TEST_SET", "a value"}, {"ZORVEL_TEST_LEFT", "1"}};
    EXPECT_EQ("ZORVEL_TEST_SET=a value\nPATH_OF_NOTHING=(none)\n",
              runChild("variables", {"ZORVEL_TEST_SET", "PATH_OF_NOTHING"}, outer).output);
    ProcessOptions without;
    without.unset = {"PATH"};
    EXPECT_EQ("PATH=(none)\n", runChild("variables", {"PATH"}, without).output);
}

TEST(Child, LinesGoBackAndForth)
{
    Process child(childCommand("echo"));
    std::string line;
    child.writeLine("first");
    ASSERT_TRUE(child.readLine(line));
    EXPECT_EQ("got first", line);
    child.writeLine("second");
    ASSERT_TRUE(child.readLine(line));
    EXPECT_EQ("got second", line);
    EXPECT_EQ(0, child.finish());
    EXPECT_FALSE(child.readLine(line));
}

TEST(Child, MuchStandardErrorDoesNotBlock)
{
    Process child(childCommand("flood"));
    std::string line;
    ASSERT_TRUE(child.readLine(line));
    EXPECT_EQ("done", line);
    std::string errors;
    EXPECT_EQ(0, child.finish(nullptr, &errors));
    EXPECT_EQ(20000u * 25, errors.size());
}

TEST(Child, KilledChildHasTheStatusOfASignal)
{
    Process child(childCommand("echo"));
    child.writeLine("ready");
    std::string line;
    ASSERT_TRUE(child.readLine(line));
    child.kill();
    EXPECT_EQ(128 + 9, child.finish());
}

}  // namespace
