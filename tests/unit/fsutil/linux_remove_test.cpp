#include "platform/directory.h"

#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <thread>

using namespace zorvel::test;
using zorvel::platform::RemovalDirectory;
namespace fs = std::filesystem;

namespace {

bool removeRF(const TemporaryTree& tree, const std::string& pattern)
{
    return zvRemoveRF(tree.path(pattern).c_str());
}

void makeFile(const fs::path& path)
{
    ASSERT_TRUE((std::ofstream(path) << "text").flush().good()) << path;
}

/// A chain of `depth` directories named "d" below a directory, made step by
/// step because no path reaches its end; enter(level) is called in each.
template <class Enter>
void makeChain(const TemporaryTree& tree, const std::string& top, int depth, Enter enter)
{
    const CurrentDirectory inside(tree.path(top));
    for (int level = 0; level < depth; ++level) {
        fs::create_directory("d");
        fs::current_path("d");
        enter(level);
    }
}

std::size_t openDescriptors()
{
    std::size_t count = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/fd"))
        count += entry.path().empty() ? 0 : 1;
    return count;
}

}  // namespace

TEST(LinuxRemove, TakesNamesLiterally)
{
    for (const char* name : {"victim ", " victim", "*", "?", "[v]*", "vic?im", "a\\b", "\\", "victim\n"}) {
        TemporaryTree tree;
        tree.directory("top");
        fs::create_directory(standardPath(tree, "top") / name);
        makeFile(standardPath(tree, "top") / name / name);
        for (const char* neighbour : {"victim", "v", "a", "b"})
            tree.file(neighbour);
        tree.directory("top2");
        tree.file("top2\\victim");
        EXPECT_TRUE(removeRF(tree, "top")) << name;
        EXPECT_EQ(tree.names(), Names({"a", "b", "top2", "v", "victim"})) << name;
        EXPECT_EQ(tree.names("top2"), Names({"victim"})) << name;
    }
}

TEST(LinuxRemove, TouchesNoNeighbourOfAMatchedName)
{
    TemporaryTree tree;
    for (const char* name : {"x*", "xa", "xb ", "xb", "y?", "ya", "[x]", "x"})
        makeFile(standardPath(tree, "") / name);
    EXPECT_TRUE(removeRF(tree, "[x]"));
    EXPECT_EQ(tree.names(), Names({"x", "x*", "xa", "xb", "xb ", "y?", "ya"}));
    EXPECT_TRUE(removeRF(tree, "xb "));
    EXPECT_EQ(tree.names(), Names({"x", "x*", "xa", "xb", "y?", "ya"}));
    EXPECT_TRUE(removeRF(tree, "y?"));
    EXPECT_EQ(tree.names(), Names({"x", "x*", "xa", "xb"}));
    EXPECT_TRUE(removeRF(tree, "X*"));
    EXPECT_EQ(tree.names(), Names({"x", "x*", "xa", "xb"}));
}

TEST(LinuxRemove, AWildCardPassesOverNamesThatNoPathCanName)
{
    TemporaryTree tree;
    tree.directory("top");
    tree.directory("top\\a");
    tree.file("top\\a\\b");
    makeFile(standardPath(tree, "top") / "a\\b");
    makeFile(standardPath(tree, "top") / "a?b");
    EXPECT_EQ(found(tree, "top\\a?b"), Names({"f:top\\a?b"}));
    EXPECT_TRUE(removeRF(tree, "top\\a?b"));
    EXPECT_TRUE(fs::exists(standardPath(tree, "top") / "a\\b"));
    EXPECT_EQ(tree.names("top\\a"), Names({"b"}));
}

TEST(LinuxRemove, RemovesDanglingLinksAndSpecialNames)
{
    TemporaryTree tree;
    tree.directory("top");
    tree.link("nowhere", "top\\dangling");
    tree.link("top\\loop", "top\\loop");
    tree.link("nowhere", "named");
    makeFile(standardPath(tree, "top") / ".hidden");
    makeFile(standardPath(tree, "top") / "...");
    EXPECT_TRUE(zvFileExists(tree.path("named").c_str()));
    EXPECT_FALSE(zvIsDirectory(tree.path("named").c_str()));
    EXPECT_EQ(found(tree, "named"), Names({"f:named"}));
    EXPECT_TRUE(removeRF(tree, "named"));
    EXPECT_TRUE(removeRF(tree, "top"));
    EXPECT_EQ(tree.names(), Names());
}

TEST(LinuxRemove, LeavesTheModeOfAHardLinkedFile)
{
    TemporaryTree tree;
    tree.directory("top");
    tree.file("kept", "text");
    fs::create_hard_link(standardPath(tree, "kept"), standardPath(tree, "top\\other"));
    tree.makeReadOnly("kept");
    EXPECT_TRUE(removeRF(tree, "top"));
    EXPECT_TRUE(tree.isReadOnly("kept"));
    EXPECT_EQ(tree.content("kept"), "text");
}

TEST(LinuxRemove, TakesATreeDeeperThanPathsAndDescriptors)
{
    TemporaryTree tree;
    tree.directory("top");
    makeChain(tree, "top", 3000, [](int level) {
        if (level % 50 == 0) {
            makeFile("file");
            fs::create_directory("e");
        }
    });
    const std::size_t before = openDescriptors();
    EXPECT_TRUE(removeRF(tree, "top"));
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(tree.exists("top"));
}

TEST(LinuxRemove, AParentThatWasLetGoIsOnlyTakenUpAgainWhereItWas)
{
    TemporaryTree tree;
    for (const char* name : {"top", "top\\child", "elsewhere"})
        tree.directory(name);
    RemovalDirectory top;
    RemovalDirectory child;
    ASSERT_EQ(top.open(tree.path("top").c_str()), 0);
    ASSERT_EQ(child.openChild(top, "child"), 0);
    top.suspend();
    EXPECT_TRUE(top.resume(child));
    top.suspend();
    fs::rename(standardPath(tree, "top\\child"), standardPath(tree, "elsewhere\\child"));
    EXPECT_FALSE(top.resume(child));
    fs::rename(standardPath(tree, "elsewhere\\child"), standardPath(tree, "top\\child"));
    EXPECT_TRUE(top.resume(child));
    EXPECT_EQ(top.removeDirectory("child", &child), 0);
}

namespace {

/// Starts the removal of a deep tree and moves a directory in the middle of it
/// away while the lowest one is being emptied. False when it was too late.
bool moveWhileRemoving(const TemporaryTree& tree, bool& isRemoved)
{
    const int files = 3000;
    tree.directory("top");
    tree.directory("elsewhere");
    tree.file("elsewhere\\file", "precious");
    std::string middle = "top";
    makeChain(tree, "top", 120, [](int level) {
        for (int i = 0; i < (level == 119 ? files : 1); ++i)
            makeFile(i == 0 ? "file" : std::to_string(i));
    });
    for (int i = 0; i < 10; ++i)
        middle += "\\d";
    fs::permissions(standardPath(tree, middle), static_cast<fs::perms>(0555));
    for (int i = 10; i < 20; ++i)
        middle += "\\d";
    const fs::path source = standardPath(tree, middle);
    const fs::path target = standardPath(tree, "elsewhere\\d");
    const fs::path lowest = [&] {
        fs::path path = source;
        for (int i = 20; i < 120; ++i)
            path /= "d";
        return path;
    }();
    const fs::file_time_type filled = fs::last_write_time(lowest);
    std::error_code missing;
    std::thread remover([&] { isRemoved = removeRF(tree, "top"); });
    while (fs::last_write_time(lowest, missing) == filled) {
    }
    fs::rename(source, target, missing);
    remover.join();
    return !missing && fs::exists(target);
}

}  // namespace

TEST(LinuxRemove, StopsWhereTheTreeWasMovedAway)
{
    bool isInTime = false;
    for (int attempt = 0; attempt < 50 && !isInTime; ++attempt) {
        TemporaryTree tree;
        bool isRemoved = true;
        isInTime = moveWhileRemoving(tree, isRemoved);
        EXPECT_EQ(tree.content("elsewhere\\file"), "precious");
        if (isInTime) {
            EXPECT_FALSE(isRemoved);
            // The removal emptied what it still held; above it stopped, with every mode as it was.
            EXPECT_EQ(tree.names("elsewhere\\d"), Names());
            std::string level = "top";
            for (int i = 1; i < 20; ++i) {
                level += "\\d";
                EXPECT_TRUE(tree.exists(level)) << level;
                EXPECT_EQ(tree.isReadOnly(level), i == 10) << level;
            }
            EXPECT_FALSE(tree.exists(level + "\\d"));
        }
    }
    EXPECT_TRUE(isInTime);
}

namespace {

const char* const precious[] = {"a", "b", "c", "sub/a", "sub/b", "sub/sub/a"};

void makeTarget(const fs::path& top)
{
    fs::create_directories(top / "sub/sub");
    for (const char* name : precious)
        makeFile(top / name);
}

/// Puts a link to the precious tree in the place of a directory and takes it
/// away again, as long as it is told to.
void swapAgainAndAgain(const fs::path& victim, const fs::path& target, const std::atomic<bool>& isOver,
                       std::atomic<int>& swaps)
{
    const fs::path away = victim.parent_path().parent_path() / "away";
    std::error_code error;
    while (!isOver) {
        fs::rename(victim, away, error);
        if (error)
            continue;
        fs::create_directory_symlink(target, victim, error);
        swaps += error ? 0 : 1;
        fs::remove(victim, error);
        fs::rename(away, victim, error);
        if (error)
            fs::remove_all(away, error);
    }
}

}  // namespace

TEST(LinuxRemove, NeverEntersALinkThatIsSwappedInUnderway)
{
    TemporaryTree tree;
    makeTarget(standardPath(tree, "precious"));
    std::atomic<bool> isOver(false);
    std::atomic<int> swaps(0);
    std::thread swapper(
        [&] { swapAgainAndAgain(standardPath(tree, "top\\sub"), standardPath(tree, "precious"), isOver, swaps); });
    for (int round = 0; round < 20000 && (round < 1000 || swaps < 1000); ++round) {
        // Built aside and moved into place: nothing here may write through the link.
        std::error_code stillThere;
        if (!tree.exists("next\\sub"))
            makeTarget(standardPath(tree, "next\\sub"));
        fs::rename(standardPath(tree, "next"), standardPath(tree, "top"), stillThere);
        removeRF(tree, "top");
    }
    isOver = true;
    swapper.join();
    EXPECT_GE(swaps, 1000);
    for (const char* name : precious)
        EXPECT_TRUE(fs::exists(standardPath(tree, "precious") / name)) << name;
}
