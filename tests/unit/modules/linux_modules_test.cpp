#include "suite/qx.h"
#include "tests/unit/modules/real_libraries.h"
#include "tests/unit/platform/working_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>

using namespace zorvel::test;

namespace {

std::string nativeForm(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::string pathOf(void* module)
{
    char path[2562];
    return zvGetCurrentModulePath(module, path, sizeof path) ? path : "none";
}

int inThisProgram = 1;

}  // namespace

TEST(LinuxModules, AnyAddressInsideAModuleMeansIt)
{
    const Loaded library(plainLibrary());
    ASSERT_TRUE(library.get());
    EXPECT_EQ(pathOf(qxFindSymbolInLibrary(library.get(), "plain_answer")), plainLibrary());
    EXPECT_EQ(pathOf(&inThisProgram), executable());
}

TEST(LinuxModules, TheKernelsOwnIsNotListed)
{
    for (const std::string& path : walkThrough(zvLoadedModuleList()))
        EXPECT_EQ(path.find("vdso"), std::string::npos) << path;
}

TEST(LinuxModules, ALibraryWhoseFileIsGoneKeepsItsPath)
{
    TemporaryTree tree;
    const std::string name = "removed" + librarySuffix();
    copyPlainLibrary(tree, name);
    const Loaded library(tree.path(name));
    ASSERT_TRUE(library.get());
    ASSERT_EQ(std::remove(nativeForm(tree.path(name)).c_str()), 0);
    EXPECT_EQ(pathOf(library.get()), tree.path(name));
    EXPECT_EQ(occurrences(walkThrough(zvLoadedModuleList()), tree.path(name)), 1u);
    EXPECT_EQ(lookUpReal("removed"), tree.path(name));
}

TEST(LinuxModules, ALibraryLoadedByARelativePathWhoseFileIsGoneKeepsItsPath)
{
    TemporaryTree tree;
    const std::string name = "sub\\removed" + librarySuffix();
    tree.directory("sub");
    copyPlainLibrary(tree, name);
    const WorkingDirectory here(nativeForm(tree.root()));
    const Loaded library(name);
    ASSERT_TRUE(library.get());
    EXPECT_EQ(pathOf(library.get()), tree.path(name));
    ASSERT_EQ(std::remove(nativeForm(tree.path(name)).c_str()), 0);
    EXPECT_EQ(pathOf(library.get()), tree.path(name));
}

// No path of the library can name it: it stays without a name, and in the list.
TEST(LinuxModules, ALibraryBelowANameWithABackslashHasNoPath)
{
    TemporaryTree tree;
    const std::string directory = nativeForm(tree.root()) + "/a\\b";
    std::filesystem::create_directories(directory + "/sub");
    const std::string name = "sub\\hidden" + librarySuffix();
    std::filesystem::copy_file(ZORVEL_PLAIN_LIBRARY, directory + "/sub/hidden" + librarySuffix());
    const zvLoadedModuleList before;
    const WorkingDirectory here(directory);
    const Loaded library(name);
    ASSERT_TRUE(library.get());
    EXPECT_EQ(pathOf(library.get()), "none");
    EXPECT_EQ(lookUpReal("hidden"), "none");
    EXPECT_EQ(zvLoadedModuleList().end().getIndex(), before.end().getIndex() + 1);
}
