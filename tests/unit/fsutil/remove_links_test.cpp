#include "platform/directory.h"

#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <system_error>

using namespace zorvel::test;
using zorvel::platform::EntryKind;
using zorvel::platform::RemovalDirectory;

namespace {

/// precious\{file, sub\{file}} and an empty directory to put links into.
class RemoveLinks : public testing::Test
{
protected:
    RemoveLinks()
    {
        for (const char* name : {"precious", "precious\\sub", "top"})
            tree.directory(name);
        for (const char* name : {"precious\\file", "precious\\sub\\file"})
            tree.file(name, "precious");
    }

    void expectIntact() const
    {
        EXPECT_EQ(tree.names("precious"), Names({"file", "sub"}));
        EXPECT_EQ(tree.names("precious\\sub"), Names({"file"}));
        EXPECT_EQ(tree.content("precious\\file"), "precious");
        EXPECT_EQ(tree.content("precious\\sub\\file"), "precious");
        EXPECT_FALSE(tree.isReadOnly("precious\\file"));
    }

    /// Removes a pattern. A system that resolves a link although it was asked
    /// not to cannot remove the link itself: there it stays, and false tells.
    void removeAndExpect(const char* pattern, const char* link)
    {
        const bool isRemoved = zvRemoveRF(tree.path(pattern).c_str());
        EXPECT_EQ(isRemoved, !tree.exists(link));
        EXPECT_TRUE(isRemoved || hasDrives());
        expectIntact();
    }

    TemporaryTree tree;
};

}  // namespace

TEST_F(RemoveLinks, ANamedLinkToADirectory)
{
    tree.link("precious", "link");
    removeAndExpect("link", "link");
}

TEST_F(RemoveLinks, ANamedLinkToADirectoryWithASeparatorBehindIt)
{
    tree.link("precious", "link");
    removeAndExpect("link\\", "link");
}

TEST_F(RemoveLinks, ANamedLinkToAFile)
{
    tree.link("precious\\file", "link");
    removeAndExpect("link", "link");
}

TEST_F(RemoveLinks, AMatchedLink)
{
    tree.link("precious", "link1");
    tree.link("precious\\sub", "link2");
    removeAndExpect("link*", "link1");
}

TEST_F(RemoveLinks, LinksInsideATree)
{
    tree.directory("top\\inner");
    tree.file("top\\inner\\file");
    tree.link("precious", "top\\inner\\to-dir");
    tree.link("precious\\file", "top\\to-file");
    tree.link("precious\\sub", "top\\to-empty");
    removeAndExpect("top", "top");
    EXPECT_FALSE(tree.exists("top\\inner\\file"));
}

TEST_F(RemoveLinks, ALinkToAnEmptyDirectory)
{
    tree.directory("empty");
    tree.link("empty", "top\\link");
    removeAndExpect("top", "top");
    EXPECT_TRUE(tree.exists("empty"));
}

TEST_F(RemoveLinks, ALinkToAReadOnlyFile)
{
    tree.file("protected");
    tree.makeReadOnly("protected");
    tree.link("protected", "top\\link");
    removeAndExpect("top", "top");
    EXPECT_TRUE(tree.isReadOnly("protected"));
}

TEST_F(RemoveLinks, TheDirectoryPartMayBeALink)
{
    tree.link("precious", "link");
    tree.file("precious\\extra");
    EXPECT_TRUE(zvRemoveRF(tree.path("link\\extra").c_str()));
    expectIntact();
}

TEST_F(RemoveLinks, AnOpenDirectoryDoesNotOpenALinkAsAChild)
{
    tree.link("precious", "top\\link");
    RemovalDirectory top;
    RemovalDirectory child;
    ASSERT_EQ(top.open(tree.path("top").c_str()), 0);
    EXPECT_NE(top.kind("link"), EntryKind::directory);
    EXPECT_NE(child.openChild(top, "link"), 0);
    EXPECT_NE(child.openChild(top, "missing"), 0);
    expectIntact();
}

/// Either the system refuses to move a directory that is being emptied away,
/// or the removal goes on in that directory, wherever it is now.
TEST_F(RemoveLinks, AnOpenDirectoryIsNotSwappedUnderTheRemoval)
{
    tree.directory("top\\victim");
    tree.file("top\\victim\\file");
    RemovalDirectory top;
    RemovalDirectory child;
    ASSERT_EQ(top.open(tree.path("top").c_str()), 0);
    ASSERT_EQ(child.openChild(top, "victim"), 0);
    std::error_code refused;
    std::filesystem::rename(standardPath(tree, "top\\victim"), standardPath(tree, "away"), refused);
    EXPECT_EQ(static_cast<bool>(refused), hasDrives());
    if (!refused)
        std::filesystem::rename(standardPath(tree, "precious"), standardPath(tree, "top\\victim"));
    EXPECT_EQ(child.removeFile("file"), 0);
    if (!refused)
        std::filesystem::rename(standardPath(tree, "top\\victim"), standardPath(tree, "precious"));
    EXPECT_EQ(tree.names(refused ? "top\\victim" : "away"), Names());
    expectIntact();
}

TEST_F(RemoveLinks, AChildThatIsRefusedHoldsNothing)
{
    tree.file("top\\file");
    tree.link("precious", "top\\link");
    RemovalDirectory top;
    RemovalDirectory child;
    ASSERT_EQ(top.open(tree.path("top").c_str()), 0);
    ASSERT_NE(child.openChild(top, "file"), 0);
    EXPECT_EQ(top.removeFile("file"), 0);
    ASSERT_NE(child.openChild(top, "link"), 0);
    std::error_code refused;
    std::filesystem::rename(standardPath(tree, "precious"), standardPath(tree, "away"), refused);
    EXPECT_FALSE(refused) << refused.message();
    std::filesystem::rename(standardPath(tree, "away"), standardPath(tree, "precious"), refused);
    expectIntact();
}

/// What was listed as a file may be a directory by now.
TEST_F(RemoveLinks, TheRemovalOfAFileTakesNoDirectory)
{
    tree.directory("top\\empty");
    tree.link("precious", "top\\link");
    RemovalDirectory top;
    ASSERT_EQ(top.open(tree.path("top").c_str()), 0);
    EXPECT_NE(top.removeFile("empty"), 0);
    EXPECT_EQ(top.removeFile("missing"), ENOENT);
    top.removeFile("link");
    EXPECT_TRUE(tree.exists("top\\empty"));
    expectIntact();
}
