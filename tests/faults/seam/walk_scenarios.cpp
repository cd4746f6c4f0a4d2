#include "tests/faults/seam/scenario.h"
#include "tests/support/temporary_tree.h"

#include <zorvel/fsutil.h>

#include <gtest/gtest.h>

#include <set>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

/// A tree to look at: 7 entries, 3 of them files, 12 bytes in all.
class WalkRun : public Run
{
public:
    WalkRun()
    {
        for (const char* const directory : {"top", "top\\a", "top\\a\\b", "top\\empty", "elsewhere"})
            m_tree.directory(directory);
        for (const char* const file : {"top\\1", "top\\a\\2", "top\\a\\b\\3", "elsewhere\\4"})
            m_tree.file(file, "four");
        m_tree.link("elsewhere", "top\\link");
    }

protected:
    const TemporaryTree m_tree;
};

/// Paths that are handed out: each once, and each of something that is there.
class Walk : public WalkRun
{
public:
    std::string act() override
    {
        const auto take = [this](const char* path) { m_paths.push_back(path); };
        const zvStringProcedureAdapter<decltype(take)> onPath(take);
        const int count = zvFindMatchingFilesAndDirs(m_tree.path("top\\*").c_str(), onPath, onPath, 5, false);
        EXPECT_EQ(m_paths.size(), static_cast<std::size_t>(count));
        return m_paths.size() == 7 ? "all" : m_paths.empty() ? "none" : "some";
    }

    void check(const std::string&, const Faults& faults) override
    {
        const bool isLinkHidden = contains(faults, entryKind);
        EXPECT_EQ(m_paths.size(), std::set<std::string>(m_paths.begin(), m_paths.end()).size());
        for (const std::string& path : m_paths) {
            EXPECT_TRUE(m_tree.exists(path.substr(m_tree.root().size() + 1))) << path;
            EXPECT_TRUE(isLinkHidden || path.find("link\\4") == std::string::npos) << path;
        }
    }

private:
    std::vector<std::string> m_paths;
};

class Size : public WalkRun
{
public:
    std::string act() override
    {
        m_size = zvGetDirectorySize(m_tree.path("top").c_str());
        return m_size == 12 ? "all" : m_size == 0 ? "none" : "some";
    }

    void check(const std::string&, const Faults&) override { EXPECT_EQ(0u, m_size % 4); }

private:
    zvUInt64 m_size = 0;
};

class Match : public WalkRun
{
public:
    std::string act() override { return textOf(zvMatchingFileOrDirExists(m_tree.path("to?").c_str())); }
    void check(const std::string&, const Faults&) override {}
};

/// A callback that throws.
class ThrowingWalk : public WalkRun
{
public:
    std::string act() override
    {
        const auto refuse = [this](const char*) {
            if (++m_calls == 3)
                throw std::bad_alloc();
        };
        const zvStringProcedureAdapter<decltype(refuse)> onPath(refuse);
        zvFindMatchingFilesAndDirs(m_tree.path("top\\*").c_str(), onPath, onPath, 5, false);
        return "done";
    }
    void check(const std::string&, const Faults&) override {}

private:
    int m_calls = 0;
};

}  // namespace

Scenarios walkScenarios()
{
    const Persistence both = Persistence::both;
    const Persistence once = Persistence::once;
    const Persistence ever = Persistence::ever;
    const Rules listing = {
        {openSearch, "", both, "all some none"},
        {openDirectory, "", both, "all some"},
        {nextOfSearch, "", both, "all some none"},
    };
    const Rules walking = Rules{{entryKind, "", both, "all some"}} + listing;
    const Rules adding =
        Rules{
            {entryKind, "directory link", ever, "all some none"},
            {entryKind, "", both, "all some"},
            {fileStatus, "", once, "some"},
            {fileStatus, "", ever, "some none"},
            {sizeOfFound, "", both, "all"},
        } +
        listing;
    const Rules matching = {{openSearch, "", both, "false"}, {nextOfSearch, "", both, "true false"}};
    const Rules leaving = {{openSearch, "", both, "bad_alloc done"},
                           {openDirectory, "", both, "bad_alloc done"},
                           {nextOfSearch, "", both, "bad_alloc done"}};
    return {
        {"walk", &make<Walk>, "all", walking},
        {"directory_size", &make<Size>, "all", adding},
        {"walk_without_kinds", &make<WithoutKinds<Walk>>, "all", walking},
        {"directory_size_without_kinds", &make<WithoutKinds<Size>>, "all", adding},
        {"match", &make<Match>, "true", matching},
        {"walk_left_by_an_exception", &make<ThrowingWalk>, "bad_alloc", leaving},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
