#include "suite/qx.h"

#include "tests/support/child.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

using namespace zorvel::test;
namespace fs = std::filesystem;

namespace {

/// Prints the current directory that a directory with a name has, after
/// removing it when asked.
int showDirectory(const std::vector<std::string>& arguments)
{
    std::string root = arguments.at(0);
    for (char& byte : root)
        byte = byte == '\\' ? '/' : byte;
    fs::create_directory(fs::path(root) / arguments.at(1));
    fs::current_path(fs::path(root) / arguments.at(1));
    if (arguments.size() > 2)
        fs::remove(fs::path(root) / arguments.at(1));
    char buffer[2562];
    std::cout << (qxGetcwd(buffer, sizeof buffer) ? buffer : "null") << '\n';
    return 0;
}

const ChildMode showDirectoryMode("show-directory", &showDirectory);

std::string directoryCalled(const TemporaryTree& tree, const std::string& name, bool isRemoved = false)
{
    std::vector<std::string> arguments = {tree.root(), name};
    if (isRemoved)
        arguments.push_back("removed");
    return runChild("show-directory", arguments).output;
}

}  // namespace

TEST(CurrentDirectory, OneThatIsGoneHasNoName)
{
    TemporaryTree tree;
    EXPECT_EQ(tree.path("there") + '\n', directoryCalled(tree, "there"));
    EXPECT_EQ("null\n", directoryCalled(tree, "gone", true));
}

TEST(CurrentDirectory, ANameThatNoPathOfTheLibraryCanHoldIsNone)
{
    TemporaryTree tree;
    EXPECT_EQ("null\n", directoryCalled(tree, "a\\b"));
}

/// In a codeset in which the bytes are one character.
TEST(CurrentDirectory, ASecondByteOfACharacterIsNoSeparator)
{
    TemporaryTree tree;
    const bool isOneCharacter = qxIsMultiByteLead(0x8F);
    EXPECT_EQ(isOneCharacter ? tree.root() + "\\\x8F\x5C\n" : "null\n", directoryCalled(tree, "\x8F\x5C"));
}
