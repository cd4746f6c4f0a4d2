#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

namespace {

using zorvel::test::TemporaryTree;
typedef std::vector<std::string> Names;

TEST(TemporaryTree, HoldsWhatIsMade)
{
    const TemporaryTree tree;
    tree.directory("a");
    tree.file("a\\f", std::string("x\0y\r\nz", 6));
    EXPECT_TRUE(tree.exists("a\\f"));
    EXPECT_FALSE(tree.exists("a\\g"));
    EXPECT_EQ(std::string("x\0y\r\nz", 6), tree.content("a\\f"));
    EXPECT_EQ(Names{"f"}, tree.names("a"));
    EXPECT_EQ(Names{"a"}, tree.names());
    EXPECT_EQ(tree.root() + "\\a\\f", tree.path("a\\f"));
}

TEST(TemporaryTree, AgesAFile)
{
    const TemporaryTree tree;
    tree.file("f");
    const long long before = tree.modificationTime("f");
    tree.age("f", -3600);
    EXPECT_EQ(before - 3600, tree.modificationTime("f"));
}

TEST(TemporaryTree, MakesAFileReadOnly)
{
    const TemporaryTree tree;
    tree.file("f");
    EXPECT_FALSE(tree.isReadOnly("f"));
    tree.makeReadOnly("f");
    EXPECT_TRUE(tree.isReadOnly("f"));
}

TEST(TemporaryTree, LinksReachTheirTarget)
{
    const TemporaryTree tree;
    tree.directory("target");
    tree.file("target\\f", "inside");
    tree.link("target", "link");
    tree.link("target\\f", "file link");
    EXPECT_EQ("inside", tree.content("link\\f"));
    EXPECT_EQ("inside", tree.content("file link"));
}

TEST(TemporaryTree, GoesWithItsReadOnlyFilesButNotWhatItsLinksPointTo)
{
    const TemporaryTree other;
    other.file("kept");
    std::string root;
    {
        const TemporaryTree tree;
        root = tree.root();
        tree.directory("a");
        tree.file("a\\f");
        tree.makeReadOnly("a\\f");
        tree.link("..\\" + other.root().substr(other.root().rfind('\\') + 1), "link");
        EXPECT_EQ(Names{"kept"}, tree.names("link"));
    }
    EXPECT_TRUE(other.exists("kept"));
    EXPECT_FALSE(other.exists("..\\" + root.substr(root.rfind('\\') + 1)));
}

}  // namespace
