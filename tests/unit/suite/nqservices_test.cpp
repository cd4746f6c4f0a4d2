#include "suite/nqservices.h"

#include "suite/qx.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using zorvel::test::TemporaryTree;

namespace {

/// The listed names, sorted, without "." and "..".
std::vector<std::string> listed(const std::string& pattern)
{
    std::vector<std::string> names;
    char* const block = ioGetDirList(pattern.c_str(), 0);
    if (block == nullptr)
        return names;
    for (const char* name = block; *name != '\0'; name += std::strlen(name) + 1) {
        if (std::string(name) != "." && std::string(name) != "..")
            names.push_back(name);
    }
    qxFree(block);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

TEST(DirectoryList, MatchingNames)
{
    const TemporaryTree tree;
    tree.file("one.txt");
    tree.file("two.txt");
    tree.file("three.dat");
    tree.directory("sub");
    tree.file("sub\\inner.txt");
    EXPECT_EQ((std::vector<std::string>{"one.txt", "sub", "three.dat", "two.txt"}), listed(tree.path("*")));
    EXPECT_EQ((std::vector<std::string>{"one.txt", "two.txt"}), listed(tree.path("*.txt")));
    EXPECT_EQ((std::vector<std::string>{"two.txt"}), listed(tree.path("t?o.txt")));
    EXPECT_EQ((std::vector<std::string>{"sub"}), listed(tree.path("sub")));
    EXPECT_EQ((std::vector<std::string>{"inner.txt"}), listed(tree.path("sub/*")));
}

TEST(DirectoryList, ManyNames)
{
    const TemporaryTree tree;
    std::vector<std::string> names;
    for (int i = 100; i < 400; ++i)
        names.push_back("a-rather-long-name-so-that-the-block-grows-" + std::to_string(i));
    for (const std::string& name : names)
        tree.file(name);
    EXPECT_EQ(names, listed(tree.path("*")));
}

TEST(DirectoryList, NothingToList)
{
    const TemporaryTree tree;
    EXPECT_TRUE(listed(tree.path("*.txt")).empty());
    EXPECT_TRUE(listed(tree.path("*")).empty());
    EXPECT_EQ(nullptr, ioGetDirList(tree.path("missing\\*").c_str(), 0));
    EXPECT_EQ(nullptr, ioGetDirList("", 0));
    EXPECT_EQ(nullptr, ioGetDirList(nullptr, 0));
    EXPECT_EQ(nullptr, ioGetDirList(tree.path("*").c_str(), 1));
    qxFree(nullptr);
}

TEST(DirectoryList, WildCardsTakeWholeCharacters)
{
    const TemporaryTree tree;
    const std::string pair = "\x83\x41";
    tree.file(pair);
    tree.file("xA");
    const bool isPair = qxIsMultiByteLead(0x83);
    EXPECT_EQ(isPair ? std::vector<std::string>{"xA"} : (std::vector<std::string>{"xA", pair}),
              listed(tree.path("*A")));
}
