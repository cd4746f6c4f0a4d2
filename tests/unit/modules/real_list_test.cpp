#include "tests/unit/modules/real_libraries.h"
#include "tests/unit/platform/working_directory.h"

#include "platform/path_rules.h"
#include "suite/qx.h"

#include <zorvel/fsutil.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

using namespace zorvel::test;

namespace {

/// One character whose second byte has the value of '\'; a character alone
/// where there are no such.
std::string doubleByteName()
{
    return qxIsMultiByteLead(0x8F) ? "\x8F\x5C" : "\x8F";
}

std::string libraryName(const char* stem)
{
    return stem + librarySuffix();
}

}  // namespace

TEST(RealModules, TheExecutableComesFirst)
{
    const zvLoadedModuleList list;
    EXPECT_EQ(*list.begin(), executable());
}

TEST(RealModules, EachIsVisitedOnce)
{
    const zvLoadedModuleList list;
    const std::vector<std::string> paths = walkThrough(list);
    EXPECT_GE(paths.size(), 4u);
    EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()).size(), paths.size());
}

TEST(RealModules, HaveFullPathsOfFiles)
{
    const zvLoadedModuleList list;
    for (const std::string& path : walkThrough(list)) {
        EXPECT_TRUE(zorvel::platform::isAbsolutePath(path.c_str())) << path;
        EXPECT_EQ(path.find('/'), std::string::npos) << path;
        EXPECT_NE(path.find('\\'), std::string::npos) << path;
        EXPECT_TRUE(zvFileExists(path.c_str())) << path;
    }
}

TEST(RealModules, TwoSnapshotsAgree)
{
    const zvLoadedModuleList one;
    const zvLoadedModuleList other;
    EXPECT_EQ(walkThrough(one), walkThrough(other));
}

TEST(RealModules, ALibraryLoadedLaterIsNotInAnOlderSnapshot)
{
    TemporaryTree tree;
    const std::string name = libraryName("later");
    copyPlainLibrary(tree, name);
    const zvLoadedModuleList before;
    const Loaded library(tree.path(name));
    ASSERT_TRUE(library.get());
    const zvLoadedModuleList after;
    EXPECT_EQ(occurrences(walkThrough(before), tree.path(name)), 0u);
    EXPECT_EQ(occurrences(walkThrough(after), tree.path(name)), 1u);
    EXPECT_EQ(after.end().getIndex(), before.end().getIndex() + 1);
}

TEST(RealModules, ALibraryUnloadedMeanwhileDoesNoHarm)
{
    TemporaryTree tree;
    for (const char* const stem : {"first", "gone", "last"})
        copyPlainLibrary(tree, libraryName(stem));
    const Loaded first(tree.path(libraryName("first")));
    Loaded gone(tree.path(libraryName("gone")));
    const Loaded last(tree.path(libraryName("last")));
    ASSERT_TRUE(first.get() && gone.get() && last.get());
    const zvLoadedModuleList list;
    const std::vector<std::string> before = walkThrough(list);
    gone.unload();
    const std::vector<std::string> after = walkThrough(list);
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t index = 0; index < before.size(); ++index) {
        if (before[index] != tree.path(libraryName("gone"))) {
            EXPECT_EQ(after[index], before[index]);
        }
    }
    const zvLoadedModuleList later;
    EXPECT_EQ(later.end().getIndex(), list.end().getIndex() - 1);
    EXPECT_EQ(occurrences(walkThrough(later), tree.path(libraryName("gone"))), 0u);
}

TEST(RealModules, ALibraryLoadedTwiceIsOneModule)
{
    TemporaryTree tree;
    const std::string name = libraryName("twice");
    copyPlainLibrary(tree, name);
    Loaded one(tree.path(name));
    const Loaded other(tree.path(name));
    ASSERT_TRUE(one.get());
    EXPECT_EQ(one.get(), other.get());
    EXPECT_EQ(occurrences(walkThrough(zvLoadedModuleList()), tree.path(name)), 1u);
    one.unload();
    EXPECT_EQ(occurrences(walkThrough(zvLoadedModuleList()), tree.path(name)), 1u);
}

// What was a relative path means something else later.
TEST(RealModules, ALibraryLoadedByARelativePathKeepsItsFullPath)
{
    TemporaryTree tree;
    tree.directory("sub");
    const std::string relative = "sub\\" + libraryName("relative");
    copyPlainLibrary(tree, relative);
    std::string root = tree.root();
    std::replace(root.begin(), root.end(), '\\', '/');
    void* library = nullptr;
    {
        const WorkingDirectory here(root);
        library = qxLoadLibrary(relative.c_str(), nullptr);
    }
    ASSERT_TRUE(library);
    EXPECT_EQ(occurrences(walkThrough(zvLoadedModuleList()), tree.path(relative)), 1u);
    EXPECT_EQ(lookUpReal("relative"), tree.path(relative));
    char path[2562];
    EXPECT_TRUE(zvGetCurrentModulePath(library, path, sizeof path));
    EXPECT_EQ(path, tree.path(relative));
    EXPECT_EQ(qxUnloadLibrary(library), 0);
}

TEST(RealModules, DirectoryWhoseNameEndsInTheByteOfASeparator)
{
    TemporaryTree tree;
    const std::string directory = doubleByteName();
    const std::string relative = directory + '\\' + libraryName("bytes");
    tree.directory(directory);
    copyPlainLibrary(tree, relative);
    const Loaded library(tree.path(relative));
    ASSERT_TRUE(library.get());
    EXPECT_EQ(occurrences(walkThrough(zvLoadedModuleList()), tree.path(relative)), 1u);
    EXPECT_EQ(lookUpReal("bytes"), tree.path(relative));
    EXPECT_EQ(lookUpReal("bytes", {"plain_answer"}), tree.path(relative));
    EXPECT_EQ(lookUpReal("bytes", {"other_answer"}), "none");
    char path[2562];
    EXPECT_TRUE(zvGetCurrentModulePath(library.get(), path, sizeof path));
    EXPECT_EQ(path, tree.path(relative));
}
