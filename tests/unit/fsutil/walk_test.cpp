#include "tests/unit/fsutil/recorder.h"

#include "suite/nqservices.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <stdexcept>

using namespace zorvel::test;

namespace {

/// dir\{a.txt, b.txt, c.log, sub.txt\{inner.txt, deep\{leaf}}, other\{x}}
class Walk : public testing::Test
{
protected:
    Walk()
    {
        tree.directory("dir");
        for (const char* name : {"dir\\a.txt", "dir\\b.txt", "dir\\c.log"})
            tree.file(name, "1234");
        for (const char* name : {"dir\\sub.txt", "dir\\sub.txt\\deep", "dir\\other"})
            tree.directory(name);
        for (const char* name : {"dir\\sub.txt\\inner.txt", "dir\\sub.txt\\deep\\leaf", "dir\\other\\x"})
            tree.file(name, "12");
    }

    TemporaryTree tree;
};

}  // namespace

TEST_F(Walk, ReportsMatchesOfOneLevel)
{
    EXPECT_EQ(found(tree, "dir\\*.txt"), Names({"d:dir\\sub.txt", "f:dir\\a.txt", "f:dir\\b.txt"}));
    EXPECT_EQ(found(tree, "dir\\?.txt"), Names({"f:dir\\a.txt", "f:dir\\b.txt"}));
    EXPECT_EQ(found(tree, "dir\\*"),
              Names({"d:dir\\other", "d:dir\\sub.txt", "f:dir\\a.txt", "f:dir\\b.txt", "f:dir\\c.log"}));
    EXPECT_EQ(found(tree, "dir\\nothing*"), Names());
}

TEST_F(Walk, ReportsASingleName)
{
    EXPECT_EQ(found(tree, "dir\\a.txt"), Names({"f:dir\\a.txt"}));
    EXPECT_EQ(found(tree, "dir\\other"), Names({"d:dir\\other"}));
    EXPECT_EQ(found(tree, "dir\\missing"), Names());
    EXPECT_EQ(found(tree, "missing\\*"), Names());
}

TEST_F(Walk, CountsTheCalls)
{
    const WalkResult result = walk(tree.path("dir\\*").c_str(), 0);
    EXPECT_EQ(result.count, 5);
    EXPECT_EQ(result.calls.size(), 5u);
}

TEST_F(Walk, EntersAsManyLevelsAsTheDepthSays)
{
    EXPECT_EQ(found(tree, "dir\\sub*", 0), Names({"d:dir\\sub.txt"}));
    EXPECT_EQ(found(tree, "dir\\sub*", 1),
              Names({"d:dir\\sub.txt", "d:dir\\sub.txt\\deep", "f:dir\\sub.txt\\inner.txt"}));
    EXPECT_EQ(found(tree, "dir\\sub*", 2), Names({"d:dir\\sub.txt", "d:dir\\sub.txt\\deep",
                                                  "f:dir\\sub.txt\\deep\\leaf", "f:dir\\sub.txt\\inner.txt"}));
    EXPECT_EQ(found(tree, "dir\\sub*", 1000).size(), 4u);
    EXPECT_EQ(found(tree, "dir\\sub*", -3), Names({"d:dir\\sub.txt"}));
}

TEST_F(Walk, OnlyTheTopLevelIsFiltered)
{
    EXPECT_EQ(found(tree, "dir\\o*", 1), Names({"d:dir\\other", "f:dir\\other\\x"}));
}

TEST_F(Walk, ReportsADirectoryBeforeItsContents)
{
    const WalkResult result = walk(tree.path("dir\\sub.txt").c_str(), 2, false, tree.root());
    ASSERT_EQ(result.calls.size(), 4u);
    EXPECT_EQ(result.calls.front(), "d:dir\\sub.txt");
    const auto at = [&](const char* call) { return std::find(result.calls.begin(), result.calls.end(), call); };
    EXPECT_LT(at("d:dir\\sub.txt\\deep"), at("f:dir\\sub.txt\\deep\\leaf"));
}

TEST_F(Walk, StopsAtTheFirstCall)
{
    EXPECT_EQ(walk(tree.path("dir\\*").c_str(), 5, true).count, 1);
    EXPECT_EQ(walk(tree.path("dir\\*").c_str(), 5, true).calls.size(), 1u);
    EXPECT_EQ(walk(tree.path("dir\\sub.txt").c_str(), 5, true).calls.size(), 1u);
    EXPECT_EQ(walk(tree.path("dir\\missing").c_str(), 5, true).count, 0);
}

TEST_F(Walk, IgnoresATrailingSeparator)
{
    EXPECT_EQ(found(tree, "dir\\sub.txt\\"), Names({"d:dir\\sub.txt"}));
    EXPECT_EQ(found(tree, "dir\\sub.txt/", 1).size(), 3u);
}

TEST_F(Walk, WritesBackslashes)
{
    std::string pattern = tree.path("dir/sub.txt/*");
    EXPECT_EQ(walk(pattern.c_str(), 0, false, tree.root()).calls.size(), 2u);
    for (const std::string& call : walk(pattern.c_str(), 0).calls)
        EXPECT_EQ(call.find('/'), std::string::npos) << call;
}

TEST_F(Walk, AcceptsWildCardsInTheLastComponentOnly)
{
    EXPECT_EQ(found(tree, "d*\\a.txt"), Names());
    // The directory part of this one is "d*", before the separator at the end is ignored.
    EXPECT_EQ(found(tree, "d*\\"), Names());
    EXPECT_EQ(found(tree, "di*\\*\\"), Names());
    EXPECT_EQ(walk("C:\\a*\\b", 5).count, 0);
}

TEST_F(Walk, NeverNamesTheDirectoryItself)
{
    for (const char* name : {"dir\\.", "dir\\..", "dir\\.\\", "dir\\..\\", "dir\\other\\.."})
        EXPECT_EQ(found(tree, name, 3), Names()) << name;
    EXPECT_EQ(walk("..", 3).count, 0);
}

TEST_F(Walk, EntersTheCurrentDirectory)
{
    const CurrentDirectory inside(tree.path("dir\\sub.txt"));
    for (const char* form : {".", ".\\", "./"}) {
        EXPECT_EQ(walk(form, 0).count, 0) << form;
        EXPECT_EQ(walk(form, -1).count, 0) << form;
        std::vector<std::string> calls = walk(form, 1).calls;
        std::sort(calls.begin(), calls.end());
        EXPECT_EQ(calls, Names({"d:deep", "f:inner.txt"})) << form;
        EXPECT_EQ(walk(form, 2).count, 3) << form;
    }
    EXPECT_EQ(walk("*", 0).count, 2);
    EXPECT_EQ(walk("deep", 0).calls, Names({"d:deep"}));
}

TEST_F(Walk, EntersARootOnlyWithDepth)
{
    const char* const root = hasDrives() ? "C:/" : "/";
    EXPECT_EQ(walk(root, 0).count, 0);
    const WalkResult result = walk(root, 1);
    EXPECT_GT(result.count, 0);
    const std::string prefix = hasDrives() ? "C:\\" : "\\";
    for (const std::string& call : result.calls)
        EXPECT_EQ(call.substr(2, prefix.size()), prefix);
    EXPECT_EQ(walk(":\\", 1).count, 0);
}

TEST_F(Walk, RefusesNullEmptyAndOverlongPatterns)
{
    EXPECT_EQ(walk(nullptr, 1).count, 0);
    EXPECT_EQ(walk("", 1).count, 0);
    EXPECT_EQ(walk(std::string(1000000, '*').c_str(), 1).count, 0);
    EXPECT_EQ(walk("\\\\\\\\", 1).count, 0);
}

TEST_F(Walk, ManyStarsEndInTime)
{
    tree.file("dir\\" + std::string(200, 'a'));
    std::string pattern = tree.path("dir\\");
    while (pattern.size() < 1020)
        pattern += "*a";
    EXPECT_EQ(walk((pattern + "b").c_str(), 0).count, 0);
}

TEST_F(Walk, LetsExceptionsOfCallbacksOut)
{
    auto fail = [](const char* path) { throw std::runtime_error(path); };
    const zvStringProcedureAdapter<decltype(fail)> failing(fail);
    const zvIgnoreString ignore;
    try {
        zvFindMatchingFilesAndDirs(tree.path("dir\\sub.txt").c_str(), failing, ignore, 3, false);
        FAIL() << "the exception was kept";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(std::string(error.what()).find(tree.path("dir\\sub.txt\\")), 0u);
    }
    EXPECT_THROW(zvFindMatchingFilesAndDirs(tree.path("dir\\sub.txt").c_str(), ignore, failing, 3, false),
                 std::runtime_error);
}

TEST_F(Walk, ReportsLinksToDirectoriesAndDoesNotEnterThem)
{
    tree.link("dir\\other", "dir\\sub.txt\\link");
    EXPECT_EQ(found(tree, "dir\\sub.txt\\l*", 3), Names({"d:dir\\sub.txt\\link"}));
    EXPECT_EQ(found(tree, "dir\\sub.txt\\link\\*"), Names({"f:dir\\sub.txt\\link\\x"}));
    tree.link("dir", "dir\\sub.txt\\loop");
    EXPECT_EQ(found(tree, "dir\\sub.txt\\loop", 1000), Names({"d:dir\\sub.txt\\loop"}));
}

TEST_F(Walk, AnswersWhetherAnythingMatches)
{
    EXPECT_TRUE(zvMatchingFileOrDirExists(tree.path("dir").c_str()));
    EXPECT_TRUE(zvMatchingFileOrDirExists(tree.path("dir\\*.log").c_str()));
    EXPECT_TRUE(zvMatchingFileOrDirExists(tree.path("dir\\sub.txt\\*").c_str()));
    EXPECT_FALSE(zvMatchingFileOrDirExists(tree.path("dir\\*.png").c_str()));
    EXPECT_FALSE(zvMatchingFileOrDirExists(tree.path("dir\\sub.txt\\deep\\leaf\\*").c_str()));
    EXPECT_FALSE(zvMatchingFileOrDirExists("."));
    EXPECT_FALSE(zvMatchingFileOrDirExists(""));
    EXPECT_FALSE(zvMatchingFileOrDirExists(nullptr));
}

TEST_F(Walk, SumsTheSizesOfATree)
{
    EXPECT_EQ(zvGetDirectorySize(tree.path("dir").c_str()), 18u);
    EXPECT_EQ(zvGetDirectorySize(tree.path("dir\\").c_str()), 18u);
    EXPECT_EQ(zvGetDirectorySize(tree.path("dir/sub.txt/").c_str()), 4u);
    EXPECT_EQ(zvGetDirectorySize(tree.path("dir\\other").c_str()), 2u);
}

TEST_F(Walk, SizesOfTheCurrentDirectory)
{
    const CurrentDirectory inside(tree.path("dir\\sub.txt"));
    for (const char* form : {".", ".\\", "./"})
        EXPECT_EQ(zvGetDirectorySize(form), 4u) << form;
    EXPECT_EQ(zvGetDirectorySize("deep"), 2u);
}

TEST_F(Walk, SizeIsZeroWhereThereIsNothingToAdd)
{
    tree.directory("empty");
    for (const char* name : {"empty", "missing", "dir\\a.txt", "d*"})
        EXPECT_EQ(zvGetDirectorySize(tree.path(name).c_str()), 0u) << name;
    EXPECT_EQ(zvGetDirectorySize(nullptr), 0u);
    EXPECT_EQ(zvGetDirectorySize(""), 0u);
    EXPECT_EQ(zvGetDirectorySize(std::string(100000, 'x').c_str()), 0u);
}

TEST_F(Walk, SizeDoesNotCountNeighboursOrLinkedDirectories)
{
    tree.directory("dir2");
    tree.file("dir2\\file", "123456789");
    tree.link("dir2", "dir\\link");
    EXPECT_EQ(zvGetDirectorySize(tree.path("dir").c_str()), 18u);
    EXPECT_EQ(zvGetDirectorySize(tree.path("dir\\link").c_str()), 9u);
}

TEST_F(Walk, KeepsTheOrderOfTheListing)
{
    for (int i = 0; i < 100; ++i)
        tree.file("dir\\other\\" + std::to_string(i * 7919 % 100) + std::string(i % 5, 'n'));
    const std::string pattern = tree.path("dir\\other\\*");
    Names expected;
    const std::unique_ptr<char, void (*)(void*)> list(ioGetDirList(pattern.c_str(), 0), &qxFree);
    ASSERT_NE(list, nullptr);
    for (const char* name = list.get(); *name; name += std::strlen(name) + 1) {
        if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0)
            expected.push_back(std::string("f:dir\\other\\") + name);
    }
    EXPECT_EQ(expected.size(), 101u);
    EXPECT_EQ(walk(pattern.c_str(), 0, false, tree.root()).calls, expected);
}
