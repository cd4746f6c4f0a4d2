#include "tests/unit/fsutil/recorder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

using namespace zorvel::test;

// An entry that becomes something else after its directory was listed and before the walk comes to it.

namespace {

/// Calls a function with the name of the entry, the last component of the path.
class OnName : public zvStringProcedure
{
public:
    explicit OnName(std::function<void(const std::string&)> call) : m_call(std::move(call)) {}

    void operator()(const char* path) const override
    {
        const std::string text(path);
        m_call(text.substr(text.rfind('\\') + 1));
    }

private:
    const std::function<void(const std::string&)> m_call;
};

/// dir\ with two entries of one kind, and precious\{file}, which links lead to.
/// While the walk reports the first of the two, the other one is swapped.
class WalkSwap : public testing::Test
{
protected:
    WalkSwap()
    {
        tree.directory("dir");
        tree.directory("precious");
        tree.file("precious\\file", "precious");
    }

    void makeFiles() const
    {
        tree.file("dir\\one", "1");
        tree.file("dir\\two", "22");
    }

    void makeDirectories() const
    {
        for (const char* name : {"dir\\one", "dir\\two"}) {
            tree.directory(name);
            tree.file(std::string(name) + "\\inner");
        }
    }

    void remove(const std::string& relative) const { std::filesystem::remove_all(standardPath(tree, relative)); }

    /// What the walk reports of the entry that was swapped, and of what is in it.
    std::vector<std::string> reportsOfSwapped(const std::function<void(const std::string&)>& swap)
    {
        const auto take = [&](const char* mark, const std::string& name) {
            const bool isTop = name == "one" || name == "two";
            if (isTop && m_first.empty()) {
                m_first = name;
                swap(name == "one" ? "dir\\two" : "dir\\one");
            } else if (isTop || m_isSwappedReported) {
                m_isSwappedReported = true;
                m_reports.push_back(mark + (isTop ? std::string("swapped") : name));
            }
        };
        const OnName onFile([&](const std::string& name) { take("f:", name); });
        const OnName onDirectory([&](const std::string& name) { take("d:", name); });
        zvFindMatchingFilesAndDirs(tree.path("dir\\*").c_str(), onFile, onDirectory, 3, false);
        return m_reports;
    }

    TemporaryTree tree;

private:
    std::string m_first;
    bool m_isSwappedReported = false;
    std::vector<std::string> m_reports;
};

}  // namespace

TEST_F(WalkSwap, AFileThatBecomesADirectoryIsReportedAsListedAndNotEntered)
{
    makeFiles();
    const auto reports = reportsOfSwapped([&](const std::string& other) {
        remove(other);
        tree.directory(other);
        tree.file(other + "\\inner");
    });
    EXPECT_EQ(reports, Names({"f:swapped"}));
}

TEST_F(WalkSwap, AFileThatBecomesALinkToADirectoryIsReportedAsListedAndNotEntered)
{
    makeFiles();
    const auto reports = reportsOfSwapped([&](const std::string& other) {
        remove(other);
        tree.link("precious", other);
    });
    EXPECT_EQ(reports, Names({"f:swapped"}));
}

TEST_F(WalkSwap, AFileThatIsGoneIsReportedAsListed)
{
    makeFiles();
    EXPECT_EQ(reportsOfSwapped([&](const std::string& other) { remove(other); }), Names({"f:swapped"}));
}

TEST_F(WalkSwap, ADirectoryThatBecomesAFileIsReportedAsAFile)
{
    makeDirectories();
    const auto reports = reportsOfSwapped([&](const std::string& other) {
        remove(other);
        tree.file(other, "4444");
    });
    EXPECT_EQ(reports, Names({"f:swapped"}));
}

TEST_F(WalkSwap, ADirectoryThatIsReplacedIsEnteredAsItIsNow)
{
    makeDirectories();
    const auto reports = reportsOfSwapped([&](const std::string& other) {
        remove(other);
        tree.directory(other);
        tree.file(other + "\\later");
    });
    EXPECT_EQ(reports, Names({"d:swapped", "f:later"}));
}

TEST_F(WalkSwap, ADirectoryThatBecomesALinkToOneIsNotEntered)
{
    makeDirectories();
    const auto reports = reportsOfSwapped([&](const std::string& other) {
        remove(other);
        tree.link("precious", other);
    });
    EXPECT_EQ(reports, Names({"d:swapped"}));
}
