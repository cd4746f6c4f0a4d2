#include "tests/support/system_facts.h"
#include "tests/unit/modules/checker.h"
#include "tests/unit/modules/counted_memory.h"
#include "tests/unit/modules/fake_loader.h"
#include "tests/unit/modules/fake_modules.h"

#include <boost/system/system_error.hpp>
#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

/// What the lookup answers; "none" for null.
std::string lookUp(const char* name, const std::vector<const char*>& symbols = {})
{
    std::vector<const char*> wanted = symbols;
    std::string buffer(2562, '#');
    const char* const found =
        zvGetLoadedModuleFullPath(&buffer[0], name, wanted.empty() ? nullptr : wanted.data(), wanted.size());
    if (!found)
        return "none";
    EXPECT_EQ(found, buffer.data());
    return found;
}

void addModules(const std::vector<std::string>& paths)
{
    std::vector<std::string> names;
    for (const std::string& path : paths)
        names.push_back(full(path));
    fake_modules::addModules(names);
}

}  // namespace

TEST(Lookup, FindsTheFirstHitAndLooksNoFurther)
{
    const fake_modules::Scope modules;
    addModules({"\\program", "\\foo\\x", "\\a\\libfoo", "\\a\\foo.1", "\\b\\foo.2", "\\c\\foo.3"});
    EXPECT_EQ(lookUp("foo"), full("\\a\\foo.1"));
    const std::vector<fake_modules::NameQuestion>& asked = fake_modules::nameQuestions();
    ASSERT_EQ(asked.size(), 4u);
    for (std::size_t index = 0; index < 4; ++index)
        EXPECT_EQ(asked[index].module, fake_modules::handle(index));
}

TEST(Lookup, WithoutAHitFindsTheFirstMatchInAFileName)
{
    const fake_modules::Scope modules;
    addModules({"\\program", "\\foo\\x", "\\a\\libfoo", "\\b\\libfoo"});
    EXPECT_EQ(lookUp("foo"), full("\\a\\libfoo"));
    EXPECT_EQ(fake_modules::nameQuestions().size(), 4u);
}

TEST(Lookup, ThenTheFirstMatchInADirectory)
{
    const fake_modules::Scope modules;
    addModules({"\\program", "\\foo\\x", "\\foo\\y"});
    EXPECT_EQ(lookUp("foo"), full("\\foo\\x"));
}

TEST(Lookup, ElseNothing)
{
    const fake_modules::Scope modules;
    addModules({"\\program", "\\a\\libbar"});
    EXPECT_EQ(lookUp("foo"), "none");
}

TEST(Lookup, WithoutANameFindsTheExecutable)
{
    for (const char* const name : {static_cast<const char*>(nullptr), ""}) {
        const fake_modules::Scope modules;
        addModules({"\\program", "\\a\\libbar"});
        EXPECT_EQ(lookUp(name), full("\\program"));
    }
}

TEST(Lookup, FindsTheFirstModuleWithTheSymbols)
{
    const fake_modules::Scope modules;
    const fake_loader::Scope loader;
    addModules({"\\program", "\\a\\foo.1", "\\b\\foo.2", "\\c\\foo.3"});
    fake_loader::add(full("\\program"), {});
    fake_loader::add(full("\\b\\foo.2"), {"one", "two"});
    fake_loader::add(full("\\c\\foo.3"), {"one"});
    EXPECT_EQ(lookUp("foo", {"one", "two"}), full("\\b\\foo.2"));
    EXPECT_EQ(lookUp("foo", {"three"}), "none");
}

TEST(Lookup, WithSymbolsOnlyFindsTheFirstThatExportsThem)
{
    const fake_modules::Scope modules;
    const fake_loader::Scope loader;
    addModules({"\\program", "\\a\\bar", "\\b\\foo"});
    fake_loader::add(full("\\program"), {"zero"});
    fake_loader::add(full("\\a\\bar"), {"one"});
    fake_loader::add(full("\\b\\foo"), {"one"});
    EXPECT_EQ(lookUp(nullptr, {"one"}), full("\\a\\bar"));
}

TEST(Lookup, LooksThroughLargeProcesses)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory;
    std::vector<std::string> paths(300, "\\a\\bar");
    paths[250] = "\\a\\foo";
    addModules(paths);
    EXPECT_EQ(lookUp("foo"), full("\\a\\foo"));
    EXPECT_EQ(memory.held(), 0u);
}

TEST(Lookup, WithoutABufferFindsNothing)
{
    for (const char* const name : {"foo", "bar", static_cast<const char*>(nullptr)}) {
        const fake_modules::Scope modules;
        addModules({"\\program", "\\a\\foo"});
        EXPECT_EQ(zvGetLoadedModuleFullPath(nullptr, name, nullptr, 0), nullptr);
    }
}

TEST(Lookup, AFailedSnapshotIsThrown)
{
    const fake_modules::Scope modules;
    fake_modules::answerWithFailure(codeOfDeniedAccess());
    EXPECT_THROW(lookUp("foo"), boost::system::system_error);
}

TEST(Lookup, AListWithoutModulesHasNone)
{
    const fake_modules::Scope modules;
    EXPECT_EQ(lookUp(nullptr), "none");
}

TEST(CurrentModulePath, PassesHandleBufferAndSizeOn)
{
    const fake_modules::Scope modules;
    fake_modules::setName(fake_modules::handle(7), "\\a\\foo");
    std::string buffer(100, '#');
    EXPECT_TRUE(zvGetCurrentModulePath(fake_modules::handle(7), &buffer[0], 60));
    EXPECT_EQ(buffer, "\\a\\foo" + std::string(60 - 6, '\0') + std::string(40, '#'));
    ASSERT_EQ(fake_modules::nameQuestions().size(), 1u);
    EXPECT_EQ(fake_modules::nameQuestions()[0].module, fake_modules::handle(7));
    EXPECT_EQ(fake_modules::nameQuestions()[0].size, 60u);
}

TEST(CurrentModulePath, IsFalseWithAClearedBufferForWhatIsNoModule)
{
    const fake_modules::Scope modules;
    std::string buffer(100, '#');
    EXPECT_FALSE(zvGetCurrentModulePath(fake_modules::handle(7), &buffer[0], 60));
    EXPECT_EQ(buffer, std::string(60, '\0') + std::string(40, '#'));
}
