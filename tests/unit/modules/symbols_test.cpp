#include "tests/unit/modules/checker.h"
#include "tests/unit/modules/fake_loader.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

typedef std::vector<std::string> Lines;

/// Opens the protected question to the tests.
class OpenChecker : public zvLoadedModuleNameChecker
{
public:
    using zvLoadedModuleNameChecker::verifyLibrarySymbols;
    using zvLoadedModuleNameChecker::zvLoadedModuleNameChecker;
};

bool verify(const std::string& path, const std::vector<const char*>& symbols)
{
    std::vector<const char*> names = symbols;
    char buffer[2562];
    return OpenChecker(buffer, nullptr, names.data(), names.size()).verifyLibrarySymbols(path.c_str());
}

}  // namespace

TEST(LibrarySymbols, AreAskedForInOrder)
{
    const fake_loader::Scope loader;
    fake_loader::add("lib", {"one", "two", "three"});
    EXPECT_TRUE(verify("lib", {"two", "one"}));
    EXPECT_EQ(fake_loader::log(), Lines({"load lib", "find two in lib", "find one in lib", "unload lib"}));
}

TEST(LibrarySymbols, TheFirstMissingOneEndsTheQuestion)
{
    const fake_loader::Scope loader;
    fake_loader::add("lib", {"one", "three"});
    EXPECT_FALSE(verify("lib", {"one", "two", "three"}));
    EXPECT_EQ(fake_loader::log(), Lines({"load lib", "find one in lib", "find two in lib", "unload lib"}));
}

TEST(LibrarySymbols, ALibraryThatCannotBeLoadedHasNone)
{
    const fake_loader::Scope loader;
    EXPECT_FALSE(verify("lib", {"one"}));
    EXPECT_EQ(fake_loader::log(), Lines({"load lib"}));
}

TEST(LibrarySymbols, NoneLoadNothing)
{
    const fake_loader::Scope loader;
    char buffer[2562];
    const char* one[] = {"one"};
    EXPECT_TRUE(verify("lib", {}));
    EXPECT_TRUE(OpenChecker(buffer, nullptr, one, 0).verifyLibrarySymbols("lib"));
    EXPECT_TRUE(OpenChecker(buffer, nullptr, nullptr, 1).verifyLibrarySymbols("lib"));
    EXPECT_TRUE(fake_loader::log().empty());
}

TEST(LibrarySymbols, ANullSymbolIsMissing)
{
    const fake_loader::Scope loader;
    fake_loader::add("lib", {"one"});
    EXPECT_FALSE(verify("lib", {"one", nullptr}));
    EXPECT_FALSE(verify("lib", {nullptr, "one"}));
    EXPECT_EQ(fake_loader::log(), Lines({"load lib", "find one in lib", "unload lib", "load lib", "unload lib"}));
}

TEST(CheckerWithSymbols, TakesAModuleThatExportsThem)
{
    const fake_loader::Scope loader;
    fake_loader::add(full("\\a\\libfoo"), {"one", "two"});
    Checker check("libfoo", {"one", "two"});
    EXPECT_TRUE(check(full("\\a\\libfoo")));
    EXPECT_EQ(check.chosen(), full("\\a\\libfoo"));
}

TEST(CheckerWithSymbols, NeverTakesAModuleThatLacksOne)
{
    const fake_loader::Scope loader;
    fake_loader::add(full("\\a\\libfoo"), {"one"});
    fake_loader::add(full("\\libfoo\\bar"), {"one", "two"});
    fake_loader::add(full("\\b\\xlibfoo"), {"two"});
    Checker check("libfoo", {"one", "two"});
    EXPECT_FALSE(check(full("\\a\\libfoo")));
    EXPECT_EQ(check.chosen(), "none");
    EXPECT_TRUE(check.bufferIsUntouched());
    EXPECT_FALSE(check(full("\\libfoo\\bar")));
    EXPECT_FALSE(check(full("\\b\\xlibfoo")));
    EXPECT_EQ(check.chosen(), full("\\libfoo\\bar"));
}

TEST(CheckerWithSymbols, PassesOverAModuleThatCannotBeLoaded)
{
    const fake_loader::Scope loader;
    Checker check("libfoo", {"one"});
    EXPECT_FALSE(check(full("\\a\\libfoo")));
    EXPECT_EQ(check.chosen(), "none");
}

TEST(CheckerWithSymbols, LoadsNoModuleWhoseNameDoesNotMatch)
{
    const fake_loader::Scope loader;
    fake_loader::add(full("\\a\\libbar"), {"one"});
    Checker check("libfoo", {"one"});
    EXPECT_FALSE(check(full("\\a\\libbar")));
    EXPECT_TRUE(fake_loader::log().empty());
}

TEST(CheckerWithSymbols, LoadsTheFullPath)
{
    const fake_loader::Scope loader;
    fake_loader::add(full("\\a\\libfoo"), {"one"});
    Checker check("libfoo", {"one"});
    EXPECT_TRUE(check(full("/a/x/../libfoo")));
    EXPECT_EQ(fake_loader::log().front(), "load " + full("\\a\\libfoo"));
}

TEST(CheckerWithSymbols, WithoutANameTakesTheFirstThatExportsThem)
{
    for (const char* const name : {static_cast<const char*>(nullptr), ""}) {
        const fake_loader::Scope loader;
        fake_loader::add(full("\\a\\first"), {});
        fake_loader::add(full("\\a\\second"), {"one"});
        fake_loader::add(full("\\a\\third"), {"one"});
        Checker check(name, {"one"});
        for (const char* const path : {"\\a\\first", "\\a\\second", "\\a\\third"})
            EXPECT_FALSE(check(full(path)));
        EXPECT_EQ(check.chosen(), full("\\a\\second"));
    }
}

TEST(CheckerWithSymbols, ACountWithoutSymbolsIsNone)
{
    const fake_loader::Scope loader;
    char buffer[2562];
    zvLoadedModuleNameChecker check(buffer, "libfoo", nullptr, 3);
    EXPECT_TRUE(check(full("\\a\\libfoo").c_str()));
    EXPECT_TRUE(fake_loader::log().empty());
}

TEST(CheckerWithSymbols, CopiesAskForTheSameSymbols)
{
    const fake_loader::Scope loader;
    fake_loader::add(full("\\a\\libfoo"), {"one"});
    Checker check("libfoo", {"two"});
    Checker assigned("libfoo");
    zvLoadedModuleNameChecker copy(check.checker());
    assigned.checker() = check.checker();
    EXPECT_FALSE(copy(full("\\a\\libfoo").c_str()));
    EXPECT_FALSE(assigned(full("\\a\\libfoo")));
    EXPECT_EQ(fake_loader::log().size(), 6u);
}
