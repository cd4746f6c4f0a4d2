#include <zorvel/fsutil.h>

#include "tests/support/child.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

using namespace zorvel::test;
namespace fs = std::filesystem;

namespace {

/// Goes into a directory below another, step by step: the whole path may be
/// longer than the system takes. Prints the temporary directory that a process
/// there has; arguments: "gone" (the directory is removed) or "there", the
/// first directory, and the names below.
int showBelow(const std::vector<std::string>& arguments)
{
    std::string first = arguments.at(1);
    for (char& byte : first)
        byte = byte == '\\' ? '/' : byte;
    fs::current_path(first);
    for (std::size_t index = 2; index < arguments.size(); ++index) {
        fs::create_directory(arguments[index]);
        fs::current_path(arguments[index]);
    }
    if (arguments.at(0) == "gone")
        fs::remove("../" + arguments.back());
    std::cout << zvGetTempDir() << '\n';
    return 0;
}

const ChildMode showBelowMode("show-below", &showBelow);

std::string chosenBelow(const std::string& state, const std::string& first, const std::vector<std::string>& names)
{
    std::vector<std::string> arguments = {state, first};
    arguments.insert(arguments.end(), names.begin(), names.end());
    ProcessOptions options;
    options.unset = {"TEMP", "TMP"};
    const ChildResult child = runChild("show-below", arguments, options);
    EXPECT_EQ(0, child.status) << child.errors;
    return child.output;
}

/// Names of directories that bring a path to so many bytes.
std::vector<std::string> namesFor(const std::string& path, std::size_t size)
{
    std::vector<std::string> names;
    std::size_t left = size - path.size();
    for (; left > 202; left -= 201)
        names.push_back(std::string(200, 'd'));
    names.push_back(std::string(left - 1, 'e'));
    return names;
}

std::string joined(std::string path, const std::vector<std::string>& names)
{
    for (const std::string& name : names)
        path += '\\' + name;
    return path;
}

}  // namespace

TEST(TemporaryDirectory, IsTmpWhereTheCurrentOneIsGone)
{
    TemporaryTree tree;
    EXPECT_EQ(tree.path("inner") + "\\\n", chosenBelow("there", tree.root(), {"inner"}));
    EXPECT_EQ("\\tmp\\\n", chosenBelow("gone", tree.root(), {"inner"}));
}

TEST(TemporaryDirectory, IsTmpWhereTheCurrentOneHasNoPathInTheLibrary)
{
    TemporaryTree tree;
    EXPECT_EQ("\\tmp\\\n", chosenBelow("there", tree.root(), {"a\\b"}));
}

TEST(TemporaryDirectory, IsTmpWhereTheCurrentOneIsTooLong)
{
    TemporaryTree tree;
    const std::vector<std::string> longest = namesFor(tree.root(), 2560);
    EXPECT_EQ(joined(tree.root(), longest) + "\\\n", chosenBelow("there", tree.root(), longest));
    for (const std::size_t size : {2561u, 2562u, 2563u, 3000u})
        EXPECT_EQ("\\tmp\\\n", chosenBelow("there", tree.root(), namesFor(tree.root(), size))) << size;
}
