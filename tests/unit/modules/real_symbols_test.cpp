#include "suite/qx.h"
#include "tests/unit/modules/real_libraries.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace zorvel::test;

/// What this program itself exports.
extern "C" int executable_answer();

int executable_answer()
{
    return 13;
}

namespace {

/// What a symbol of a library answers when it is called.
int answerOf(void* symbol)
{
    int (*function)() = nullptr;
    std::memcpy(&function, &symbol, sizeof function);
    return function();
}

std::string fileName(const std::string& path)
{
    return path.substr(path.rfind('\\') + 1);
}

}  // namespace

TEST(RealLoader, LoadsFindsAndUnloads)
{
    void* const library = qxLoadLibrary(plainLibrary().c_str(), nullptr);
    ASSERT_TRUE(library);
    void* const symbol = qxFindSymbolInLibrary(library, "plain_answer");
    ASSERT_TRUE(symbol);
    EXPECT_EQ(answerOf(symbol), 42);
    EXPECT_EQ(qxFindSymbolInLibrary(library, "plain_question"), nullptr);
    EXPECT_EQ(qxUnloadLibrary(library), 0);
    EXPECT_EQ(occurrences(walkThrough(zvLoadedModuleList()), plainLibrary()), 0u);
}

TEST(RealLoader, LeavesTheDetailAlone)
{
    int mine = 0;
    void* detail = &mine;
    EXPECT_EQ(qxLoadLibrary("\\no such\\library", &detail), nullptr);
    EXPECT_EQ(detail, &mine);
    void* const library = qxLoadLibrary(plainLibrary().c_str(), &detail);
    EXPECT_TRUE(library);
    EXPECT_EQ(detail, &mine);
    EXPECT_EQ(qxUnloadLibrary(library), 0);
}

TEST(RealLoader, CountsHolds)
{
    void* const library = qxLoadLibrary(plainLibrary().c_str(), nullptr);
    EXPECT_EQ(qxLoadLibrary(plainLibrary().c_str(), nullptr), library);
    EXPECT_EQ(qxUnloadLibrary(library), 0);
    EXPECT_TRUE(qxFindSymbolInLibrary(library, "plain_answer"));
    EXPECT_EQ(qxUnloadLibrary(library), 0);
    EXPECT_EQ(occurrences(walkThrough(zvLoadedModuleList()), plainLibrary()), 0u);
}

TEST(RealLoader, RefusesWhatIsNoLibrary)
{
    TemporaryTree tree;
    tree.directory("directory");
    tree.file("text", "no library");
    tree.file("empty");
    for (const char* const name : {"directory", "text", "empty", "missing"})
        EXPECT_EQ(qxLoadLibrary(tree.path(name).c_str(), nullptr), nullptr) << name;
    EXPECT_EQ(qxLoadLibrary("", nullptr), nullptr);
}

TEST(RealLoader, RefusesNull)
{
    EXPECT_EQ(qxLoadLibrary(nullptr, nullptr), nullptr);
    EXPECT_EQ(qxFindSymbolInLibrary(nullptr, "plain_answer"), nullptr);
    EXPECT_EQ(qxUnloadLibrary(nullptr), -1);
    const Loaded library(plainLibrary());
    ASSERT_TRUE(library.get());
    EXPECT_EQ(qxFindSymbolInLibrary(library.get(), nullptr), nullptr);
}

TEST(RealSymbols, ALibraryExportsItsOwn)
{
    const Loaded library(plainLibrary());
    ASSERT_TRUE(library.get());
    const std::string name = fileName(plainLibrary());
    EXPECT_EQ(lookUpReal(name.c_str()), plainLibrary());
    EXPECT_EQ(lookUpReal(name.c_str(), {"plain_answer"}), plainLibrary());
    EXPECT_EQ(lookUpReal(name.c_str(), {"plain_answer", "plain_question"}), "none");
    EXPECT_EQ(lookUpReal(nullptr, {"plain_answer"}), plainLibrary());
}

// A symbol that a library takes from another is the other's.
TEST(RealSymbols, ADependencysAreNotTheLibrarysOwn)
{
    const Loaded library(dependentLibrary());
    ASSERT_TRUE(library.get());
    EXPECT_EQ(answerOf(qxFindSymbolInLibrary(library.get(), "dependent_answer")), 42);
    EXPECT_EQ(qxFindSymbolInLibrary(library.get(), "provider_answer"), nullptr);
    const std::string name = fileName(dependentLibrary());
    EXPECT_EQ(lookUpReal(name.c_str(), {"dependent_answer"}), dependentLibrary());
    EXPECT_EQ(lookUpReal(name.c_str(), {"provider_answer"}), "none");
    EXPECT_NE(lookUpReal(nullptr, {"provider_answer"}).find("modules_provider"), std::string::npos);
}

TEST(RealSymbols, TheExecutablesAreFoundInIt)
{
    const std::string name = fileName(executable());
    EXPECT_EQ(lookUpReal(name.c_str(), {"executable_answer"}), executable());
    EXPECT_EQ(lookUpReal(nullptr, {"executable_answer"}), executable());
    EXPECT_EQ(lookUpReal(name.c_str(), {"executable_question"}), "none");
}

TEST(RealSymbols, TheQuestionLeavesTheLibraryAsItWas)
{
    Loaded library(plainLibrary());
    ASSERT_TRUE(library.get());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(lookUpReal(nullptr, {"plain_answer"}), plainLibrary());
    EXPECT_TRUE(qxFindSymbolInLibrary(library.get(), "plain_answer"));
    library.unload();
    EXPECT_EQ(lookUpReal(nullptr, {"plain_answer"}), "none");
    EXPECT_EQ(occurrences(walkThrough(zvLoadedModuleList()), plainLibrary()), 0u);
}

TEST(RealLookup, WithoutANameFindsTheExecutable)
{
    EXPECT_EQ(lookUpReal(nullptr), executable());
    EXPECT_EQ(lookUpReal(""), executable());
    EXPECT_EQ(lookUpReal("no module has this name"), "none");
}
