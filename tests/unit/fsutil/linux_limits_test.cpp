#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

using namespace zorvel::test;

// The library's own limits. Windows refuses paths of 260 bytes and more before they are reached.

TEST(LinuxLimits, AWalkAcceptsAPatternOf1024BytesAndNoMore)
{
    TemporaryTree tree;
    tree.directory("dir");
    for (const char* name : {"dir\\a", "dir\\b", "dir\\c"})
        tree.file(name);
    std::string pattern = tree.path("dir\\");
    pattern.append(1024 - pattern.size(), '*');
    EXPECT_EQ(walk(pattern.c_str(), 0).count, 3);
    pattern += '*';
    EXPECT_EQ(walk(pattern.c_str(), 0).count, 0);
}

TEST(LinuxLimits, SizeAcceptsAPathThatLeavesRoomForThePattern)
{
    TemporaryTree tree;
    tree.directory("dir");
    tree.file("dir\\file", "1234");
    std::string path = tree.path("dir");
    while (path.size() < 1020)
        path += "\\.";
    path.resize(1022, '\\');
    EXPECT_EQ(zvGetDirectorySize(path.c_str()), 4u);
    path.resize(1024, '\\');
    EXPECT_EQ(zvGetDirectorySize(path.c_str()), 0u);
}

TEST(LinuxLimits, RemovalAcceptsAPatternOf1024BytesAndNoMore)
{
    TemporaryTree tree;
    tree.file("file");
    std::string pattern = tree.path("*");
    EXPECT_TRUE(zvRemoveRF((pattern + std::string(1025 - pattern.size(), '*')).c_str()));
    EXPECT_EQ(tree.names(), Names({"file"}));
    EXPECT_TRUE(zvRemoveRF((pattern + std::string(1024 - pattern.size(), '*')).c_str()));
    EXPECT_EQ(tree.names(), Names());
}

namespace {

/// Makes directories of 200-byte names below the tree, as deep as the system
/// takes them, and returns the longest path.
std::string makeDeepTree(const TemporaryTree& tree, std::size_t length)
{
    const std::string name(200, 'n');
    std::string relative = "deep";
    tree.directory(relative);
    while (tree.path(relative).size() + 201 <= length) {
        relative += '\\' + name;
        tree.directory(relative);
    }
    return relative;
}

}  // namespace

TEST(LinuxLimits, AWalkPassesOverPathsThatDoNotFitTheBuffer)
{
    TemporaryTree tree;
    const std::string last = makeDeepTree(tree, 2561 - 110);
    const std::size_t room = 2561 - tree.path(last).size() - 1;
    ASSERT_LT(room, 255u);
    tree.file(last + '\\' + std::string(room, 'f'), "123");
    tree.file(last + '\\' + std::string(room + 1, 'g'), "45678");
    tree.directory(last + '\\' + std::string(room, 'd'));
    const WalkResult result = walk(tree.path("deep").c_str(), 100, false, tree.root());
    const auto has = [&](const std::string& call) {
        return std::count(result.calls.begin(), result.calls.end(), call) == 1;
    };
    EXPECT_TRUE(has("f:" + last + '\\' + std::string(room, 'f')));
    EXPECT_TRUE(has("d:" + last + '\\' + std::string(room, 'd')));
    for (const std::string& call : result.calls)
        EXPECT_EQ(call.find('g'), std::string::npos);
    EXPECT_EQ(static_cast<std::size_t>(result.count), result.calls.size());
    EXPECT_EQ(zvGetDirectorySize(tree.path("deep").c_str()), 3u);
}

TEST(LinuxLimits, RemovalTakesATreeLongerThanAPattern)
{
    TemporaryTree tree;
    std::string relative = "deep";
    tree.directory(relative);
    while (tree.path(relative).size() < 1500) {
        relative += '\\' + std::string(100, 'n');
        tree.directory(relative);
        tree.file(relative + "\\file");
    }
    EXPECT_TRUE(zvRemoveRF(tree.path("deep").c_str()));
    EXPECT_EQ(tree.names(), Names());
}
