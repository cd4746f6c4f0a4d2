#include "tests/unit/modules/checker.h"
#include "tests/unit/platform/working_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <type_traits>

using namespace zorvel::test;

namespace {

/// The current directory in the library's form.
std::string currentDirectory()
{
    std::string path = std::filesystem::current_path().string();
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

/// An absolute path of so many bytes, of short names, that ends in `end`.
std::string pathOfLength(std::size_t length, const std::string& end)
{
    std::string path = full("\\");
    while (path.size() + 100 + end.size() < length)
        path += std::string(99, 'd') + '\\';
    return path + std::string(length - path.size() - end.size() - 1, 'e') + '\\' + end;
}

}  // namespace

TEST(NameChecker, AMatchAtTheBeginningOfTheFileNameIsAHit)
{
    Checker check("libfoo");
    EXPECT_FALSE(check.checker().getModuleFullPath());
    EXPECT_TRUE(check(full("\\a\\libfoo.dll")));
    EXPECT_TRUE(check.resultIsBuffer());
    EXPECT_EQ(check.chosen(), full("\\a\\libfoo.dll"));
}

TEST(NameChecker, AMatchInsideTheFileNameIsRemembered)
{
    Checker check("foo");
    EXPECT_FALSE(check(full("\\a\\libfoo.dll")));
    EXPECT_TRUE(check.resultIsBuffer());
    EXPECT_EQ(check.chosen(), full("\\a\\libfoo.dll"));
}

TEST(NameChecker, AMatchInADirectoryIsRemembered)
{
    Checker check("libfoo");
    EXPECT_FALSE(check(full("\\libfoo\\x\\libbar.dll")));
    EXPECT_TRUE(check.resultIsBuffer());
    EXPECT_EQ(check.chosen(), full("\\libfoo\\x\\libbar.dll"));
}

TEST(NameChecker, WithoutAMatchNothingIsRemembered)
{
    Checker check("libfoo");
    EXPECT_FALSE(check(full("\\a\\libbar.dll")));
    EXPECT_EQ(check.chosen(), "none");
    EXPECT_TRUE(check.bufferIsUntouched());
}

TEST(NameChecker, AMatchInTheFileNameIsBetterThanOneInADirectory)
{
    Checker check("foo");
    EXPECT_FALSE(check(full("\\foo\\first")));
    EXPECT_FALSE(check(full("\\a\\libfoo")));
    EXPECT_EQ(check.chosen(), full("\\a\\libfoo"));
    EXPECT_FALSE(check(full("\\foo\\second")));
    EXPECT_EQ(check.chosen(), full("\\a\\libfoo"));
}

TEST(NameChecker, AHitIsBetterThanAnything)
{
    for (const char* const before : {"\\foo\\first", "\\a\\libfoo"}) {
        Checker check("foo");
        EXPECT_FALSE(check(full(before)));
        EXPECT_TRUE(check(full("\\a\\foo.so")));
        EXPECT_EQ(check.chosen(), full("\\a\\foo.so"));
        EXPECT_FALSE(check(full(before)));
        EXPECT_FALSE(check(full("\\b\\libfoo")));
        EXPECT_EQ(check.chosen(), full("\\a\\foo.so"));
    }
}

TEST(NameChecker, TiesKeepTheEarlierModule)
{
    Checker inFile("foo");
    EXPECT_FALSE(inFile(full("\\a\\libfoo")));
    EXPECT_FALSE(inFile(full("\\b\\libfoo")));
    EXPECT_EQ(inFile.chosen(), full("\\a\\libfoo"));
    Checker inDirectory("foo");
    EXPECT_FALSE(inDirectory(full("\\foo\\first")));
    EXPECT_FALSE(inDirectory(full("\\foo\\second")));
    EXPECT_EQ(inDirectory.chosen(), full("\\foo\\first"));
    Checker unnamed(nullptr);
    EXPECT_FALSE(unnamed(full("\\first")));
    EXPECT_FALSE(unnamed(full("\\second")));
    EXPECT_EQ(unnamed.chosen(), full("\\first"));
}

// Somebody who goes on after a hit is told of the next one.
TEST(NameChecker, ASecondHitReplacesTheFirst)
{
    Checker check("foo");
    EXPECT_TRUE(check(full("\\a\\foo")));
    EXPECT_TRUE(check(full("\\b\\foo")));
    EXPECT_EQ(check.chosen(), full("\\b\\foo"));
}

// Only the first occurrence is looked at.
TEST(NameChecker, AnOccurrenceInADirectoryHidesTheOneInTheFileName)
{
    Checker check("foo");
    EXPECT_FALSE(check(full("\\foo\\foo.dll")));
    EXPECT_EQ(check.chosen(), full("\\foo\\foo.dll"));
    EXPECT_FALSE(check(full("\\a\\libfoo")));
    EXPECT_EQ(check.chosen(), full("\\a\\libfoo"));
}

TEST(NameChecker, TheFirstOccurrenceInTheFileNameCounts)
{
    Checker check("foo");
    EXPECT_FALSE(check(full("\\a\\xfoo.foo")));
    EXPECT_TRUE(check(full("\\a\\foofoo")));
}

TEST(NameChecker, ANameWithASeparatorIsNeverInTheFileName)
{
    for (const char* const name : {"a\\libfoo", "\\libfoo", "\\a\\"}) {
        Checker check(name);
        EXPECT_FALSE(check(full("\\a\\libfoo.dll"))) << name;
        EXPECT_EQ(check.chosen(), full("\\a\\libfoo.dll")) << name;
        EXPECT_FALSE(check(full("\\b\\a\\libfoo.dll"))) << name;
        EXPECT_EQ(check.chosen(), full("\\a\\libfoo.dll")) << name;
    }
    Checker beginning("\\libfoo");
    EXPECT_FALSE(beginning(full("\\libfoo\\x")));
    EXPECT_FALSE(beginning(full("\\a\\libfoo.dll")));
    EXPECT_EQ(beginning.chosen(), full("\\libfoo\\x")) << "one is as good as the other";
    Checker other("a/libfoo");
    EXPECT_FALSE(other(full("\\a\\libfoo.dll")));
    EXPECT_EQ(other.chosen(), "none");
}

TEST(NameChecker, TheWholeFileNameAndTheWholePathAreMatches)
{
    Checker file("libfoo.dll");
    EXPECT_TRUE(file(full("\\a\\libfoo.dll")));
    const std::string path = full("\\a\\libfoo.dll");
    Checker whole(path.c_str());
    EXPECT_FALSE(whole(path));
    EXPECT_EQ(whole.chosen(), path);
}

// In code pages with double-byte characters too, where this one is a character whose second byte is that of '\\'.
TEST(NameChecker, SeparatorsAreLookedForByteByByte)
{
    const std::string path = full("\\a\\lib\x8F\x5C"
                                  "foo");
    Checker behind("foo");
    EXPECT_TRUE(behind(path));
    EXPECT_EQ(behind.chosen(), path);
    Checker before("lib");
    EXPECT_FALSE(before(path));
    EXPECT_FALSE(before(full("\\a\\xlib")));
    EXPECT_EQ(before.chosen(), full("\\a\\xlib"));
}

TEST(NameChecker, CaseCounts)
{
    Checker check("libfoo");
    EXPECT_FALSE(check(full("\\a\\LibFoo.dll")));
    EXPECT_EQ(check.chosen(), "none");
}

TEST(NameChecker, NullAndTheEmptyNameTakeTheFirstModule)
{
    for (const char* const name : {static_cast<const char*>(nullptr), ""}) {
        Checker check(name);
        EXPECT_FALSE(check(full("\\a\\first")));
        EXPECT_EQ(check.chosen(), full("\\a\\first"));
        EXPECT_FALSE(check(full("\\a\\second")));
        EXPECT_EQ(check.chosen(), full("\\a\\first"));
    }
}

TEST(NameChecker, PathsAreMadeFullFirst)
{
    const WorkingDirectory here(std::filesystem::temp_directory_path().string());
    Checker check("libfoo");
    EXPECT_TRUE(check("lib/./x/..\\libfoo.dll"));
    EXPECT_EQ(check.chosen(), currentDirectory() + "\\lib\\libfoo.dll");
    Checker plain("libfoo");
    EXPECT_TRUE(plain("libfoo.dll"));
    EXPECT_EQ(plain.chosen(), currentDirectory() + "\\libfoo.dll");
    Checker absolute("libfoo");
    EXPECT_TRUE(absolute(full("/a/x/../libfoo.dll")));
    EXPECT_EQ(absolute.chosen(), full("\\a\\libfoo.dll"));
}

TEST(NameChecker, TheCurrentDirectoryIsPartOfThePath)
{
    const std::filesystem::path directory = std::filesystem::temp_directory_path();
    const WorkingDirectory here(directory.string());
    const std::string last = (directory.has_filename() ? directory : directory.parent_path()).filename().string();
    ASSERT_FALSE(last.empty());
    Checker check(last.c_str());
    EXPECT_FALSE(check("libbar.dll"));
    EXPECT_EQ(check.chosen(), currentDirectory() + "\\libbar.dll");
}

TEST(NameChecker, TakesPathsOf2561Bytes)
{
    const std::string path = pathOfLength(2561, "libfoo");
    ASSERT_EQ(path.size(), 2561u);
    Checker check("libfoo");
    EXPECT_TRUE(check(path));
    EXPECT_EQ(check.chosen(), path);
    EXPECT_TRUE(check.keptInside());
}

TEST(NameChecker, RefusesLongerPaths)
{
    for (const std::size_t length : {2562, 2563, 4000, 40000}) {
        for (const char* const name : {static_cast<const char*>(nullptr), "libfoo"}) {
            Checker check(name);
            EXPECT_FALSE(check(pathOfLength(length, "libfoo"))) << length;
            EXPECT_EQ(check.chosen(), "none") << length;
            EXPECT_TRUE(check.bufferIsUntouched()) << length;
        }
    }
}

// Of a path that cannot be made full the text itself is looked at: the only one that a match can begin.
TEST(NameChecker, APathThatCannotBeMadeFullIsTakenAsItIs)
{
    const std::string path = "libfoo" + std::string(2555, 'x');
    Checker beginning("libfoo");
    EXPECT_TRUE(beginning(path));
    EXPECT_EQ(beginning.chosen(), path);
    EXPECT_TRUE(beginning.keptInside());
    Checker inside("foo");
    EXPECT_FALSE(inside(path));
    EXPECT_EQ(inside.chosen(), path);
    Checker missing("bar");
    EXPECT_FALSE(missing(path));
    EXPECT_EQ(missing.chosen(), "none");
}

TEST(NameChecker, RefusesNullAndTheEmptyPath)
{
    for (const char* const name : {static_cast<const char*>(nullptr), "", "libfoo"}) {
        Checker check(name);
        EXPECT_FALSE(check.checker()(nullptr));
        EXPECT_FALSE(check(""));
        EXPECT_EQ(check.chosen(), "none");
        EXPECT_TRUE(check.bufferIsUntouched());
    }
}

TEST(NameChecker, WithoutABufferThereIsNoResult)
{
    zvLoadedModuleNameChecker check(nullptr, "foo", nullptr, 0);
    EXPECT_FALSE(check(full("\\foo\\x").c_str()));
    EXPECT_FALSE(check(full("\\a\\libfoo").c_str()));
    check(full("\\a\\foo").c_str());
    EXPECT_EQ(check.getModuleFullPath(), nullptr);
}

TEST(NameChecker, ACopyGoesOnFromWhereItWasMade)
{
    Checker check("foo");
    check(full("\\a\\libfoo"));
    zvLoadedModuleNameChecker copy(check.checker());
    EXPECT_EQ(copy.getModuleFullPath(), check.buffer());
    EXPECT_FALSE(copy(full("\\b\\libfoo").c_str()));
    EXPECT_EQ(check.chosen(), full("\\a\\libfoo")) << "a tie keeps the earlier";
    EXPECT_TRUE(copy(full("\\b\\foo").c_str()));
    EXPECT_EQ(check.chosen(), full("\\b\\foo")) << "both write to one buffer";
}

TEST(NameChecker, AssignmentCopiesEverything)
{
    Checker check("foo");
    check(full("\\a\\libfoo"));
    Checker target("bar");
    target(full("\\a\\bar"));
    EXPECT_EQ(&(target.checker() = check.checker()), &target.checker());
    EXPECT_EQ(target.checker().getModuleFullPath(), check.buffer());
    EXPECT_FALSE(target(full("\\b\\libfoo")));
    EXPECT_EQ(check.chosen(), full("\\a\\libfoo"));
    EXPECT_FALSE(target(full("\\b\\bar")));
    EXPECT_TRUE(target(full("\\b\\foo")));
    EXPECT_EQ(check.chosen(), full("\\b\\foo"));
    EXPECT_EQ(std::string(target.buffer()), full("\\a\\bar"));
}

TEST(NameChecker, ACopyOfAFreshOneHasNoResult)
{
    Checker check("foo");
    zvLoadedModuleNameChecker copy(check.checker());
    EXPECT_TRUE(copy(full("\\a\\foo").c_str()));
    EXPECT_EQ(copy.getModuleFullPath(), check.buffer());
    EXPECT_EQ(check.checker().getModuleFullPath(), nullptr);
}

TEST(NameChecker, CanBeDerivedFrom)
{
    EXPECT_TRUE(std::has_virtual_destructor<zvLoadedModuleNameChecker>::value);
    EXPECT_EQ(sizeof(zvLoadedModuleNameChecker), 8u + 5 * 8 + 4 + 4);
}
