#include "tests/examples/small/example.h"

#include "platform/path_rules.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

std::string fileName(const std::string& path)
{
    return path.substr(path.rfind('\\') + 1);
}

bool isTheLibrary(const std::string& path)
{
    const std::string name = fileName(path);
    return name.find("zorvel.dll") == 0 || name.find("libzorvel.so") == 0;
}

}  // namespace

TEST(FindModule, ListsAllModulesTheProgramFirst)
{
    const Outcome outcome = runExample("find_module", {});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    const std::vector<std::string> paths = linesOf(outcome.output);
    ASSERT_GE(paths.size(), 3u);
    EXPECT_EQ(fileName(paths[0]).find("find_module"), 0u) << paths[0];
    int libraries = 0;
    for (const std::string& path : paths) {
        EXPECT_TRUE(zorvel::platform::isAbsolutePath(path.c_str())) << path;
        libraries += isTheLibrary(path);
    }
    EXPECT_EQ(libraries, 1);
}

TEST(FindModule, FindsALibraryByWhatItExports)
{
    const Outcome missing = runExample("find_module", {"", "_Z8zvMkdirPPKc", "no_such_symbol"});
    EXPECT_EQ(missing.status, 1);
    const Outcome found = runExample("find_module", {"", "_Z8zvMkdirPPKc", "_Z6qxFreePv"});
    EXPECT_EQ(found.status, 0);
    ASSERT_EQ(linesOf(found.output).size(), 1u) << found.errors;
    EXPECT_TRUE(isTheLibrary(linesOf(found.output)[0])) << found.output;
}

TEST(FindModule, FindsTheProgramByTheBeginningOfItsName)
{
    const Outcome outcome = runExample("find_module", {"find_mod"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(fileName(outcome.output).find("find_module"), 0u) << outcome.output;
}

TEST(FindModule, SaysWhenThereIsNone)
{
    const Outcome outcome = runExample("find_module", {"no library has this name"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "no such library is loaded\n");
}
