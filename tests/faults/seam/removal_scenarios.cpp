#include "tests/faults/seam/scenario.h"
#include "tests/support/system_facts.h"
#include "tests/support/temporary_tree.h"

#include <zorvel/fsutil.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

/// Whether the system says in one of the documented ways that there is nothing
/// to remove, although there is.
bool hidesEntry(const Fault& fault)
{
    const std::string answer = fault.answer.name;
    const bool isMissing = answer == "ENOENT" || answer == "none";
    const bool isLook = fault.function == openRemoval || fault.function == matchEntries;
    return isMissing || (isLook && (answer == "ENOTDIR" || answer == "EACCES"));
}

bool hides(const Faults& faults)
{
    return std::any_of(faults.begin(), faults.end(), hidesEntry);
}

/// A tree that is to go, beside one that is not and that a link leads to.
class RemovalRun : public Run
{
public:
    explicit RemovalRun(const std::string& pattern) : m_pattern(m_tree.path(pattern))
    {
        for (const char* const directory : {"gone", "gone\\a", "gone\\a\\b", "gone\\empty", "kept", "gone-not"})
            m_tree.directory(directory);
        for (const char* const file : {"gone\\1", "gone\\a\\2", "gone\\a\\b\\3", "gone\\a\\b\\4", "kept\\5"})
            m_tree.file(file, "content");
        // Where a link cannot be removed, no tree with one can.
        if (linksAreRemovable())
            m_tree.link("kept", "gone\\a\\link");
        m_tree.makeReadOnly("gone\\a\\2");
    }

    std::string act() override { return textOf(zvRemoveRF(m_pattern.c_str())); }

    void check(const std::string& ending, const Faults& faults) override
    {
        EXPECT_TRUE(m_tree.exists("kept\\5")) << "what a link leads to";
        EXPECT_TRUE(m_tree.exists("gone-not")) << "a neighbour";
        if (ending == "true" && !hides(faults)) {
            EXPECT_FALSE(zvMatchingFileOrDirExists(m_pattern.c_str()));
        }
        EXPECT_TRUE(zvRemoveRF(m_pattern.c_str())) << "on a healthy system";
        EXPECT_FALSE(zvMatchingFileOrDirExists(m_pattern.c_str()));
        EXPECT_TRUE(m_tree.exists("kept\\5"));
    }

protected:
    const TemporaryTree m_tree;
    const std::string m_pattern;
};

class RemoveTree : public RemovalRun
{
public:
    RemoveTree() : RemovalRun("gone") {}
};

class RemoveContents : public RemovalRun
{
public:
    RemoveContents() : RemovalRun("gone\\*") {}
};

class RemoveFile : public RemovalRun
{
public:
    RemoveFile() : RemovalRun("gone\\1") {}
};

/// Deeper than directories are kept open.
class RemoveDeepTree : public Run
{
public:
    RemoveDeepTree()
    {
        std::string path = "deep";
        m_tree.directory(path);
        for (int level = 0; level < 68; ++level) {
            path += "\\d";
            m_tree.directory(path);
        }
        m_tree.file(path + "\\file");
    }

    std::string act() override { return textOf(zvRemoveRF(m_tree.path("deep").c_str())); }

    void check(const std::string& ending, const Faults& faults) override
    {
        if (ending == "true" && !hides(faults)) {
            EXPECT_FALSE(m_tree.exists("deep"));
        }
        EXPECT_TRUE(zvRemoveRF(m_tree.path("deep").c_str()));
        EXPECT_FALSE(m_tree.exists("deep"));
    }

private:
    const TemporaryTree m_tree;
};

}  // namespace

Scenarios removalScenarios()
{
    const Persistence once = Persistence::once;
    const Persistence ever = Persistence::ever;
    const Persistence both = Persistence::both;
    // Where the caller's pattern is looked for, some answers say that nothing is there to be removed.
    const Rules looking = {
        {openRemoval, "ENOENT ENOTDIR EACCES", both, "true"},
        {openRemoval, "bad_alloc", both, "bad_alloc"},
        {openRemoval, "", both, "false"},
        {matchEntries, "ENOENT EACCES", both, "true"},
        {matchEntries, "bad_alloc", both, "bad_alloc"},
        {matchEntries, "", both, "false"},
        {resume, "", both, "false"},
    };
    // A level that could not be looked into may be empty all the same.
    const Rules descending =
        looking + Rules{
                      {openChild, "bad_alloc", both, "bad_alloc"},   {openChild, "", both, "true false"},
                      {listEntries, "bad_alloc", both, "bad_alloc"}, {listEntries, "EIO-done", both, "true"},
                      {listEntries, "", both, "true false"},         {kindOfEntry, "", both, "true false"},
                  };
    // What is said to be gone although it is read-only is not tried again; what is refused is, without its protection.
    const char* const refusedOnce = readOnlyFilesStay() ? "true false" : "false";
    const char* const withoutAReply = readOnlyFilesStay() ? "true false" : "true";
    const Rules removing = descending + Rules{
                                            {allowRemovalOf, "", both, "false"},
                                            {removeEmptyDirectory, "ENOENT-done", both, "true"},
                                            {removeEmptyDirectory, "ENOENT", once, "true false"},
                                            {removeEmptyDirectory, "ENOENT", ever, "true"},
                                            {removeEmptyDirectory, "EIO-done", both, "true"},
                                            {removeEmptyDirectory, "", both, "false"},
                                            {removeEntry, "ENOENT-done", both, withoutAReply},
                                            {removeEntry, "EIO-done", both, "true"},
                                            {removeEntry, "", once, refusedOnce},
                                            {removeEntry, "", ever, "false"},
                                        };
    // What is said to be gone is not looked for again.
    const Rules removingEach = Rules{{removeEntry, "ENOENT", both, "true false"}} + removing;
    const Rules removingOne =
        Rules{
            {kindOfEntry, "directory", both, "false"},
            {kindOfEntry, "", both, "true"},
            {removeEntry, "ENOENT", both, "true"},
        } +
        removing;
    return {
        {"remove_tree", &make<RemoveTree>, "true", removing},
        {"remove_tree_without_kinds", &make<WithoutKinds<RemoveTree>>, "true", removing},
        {"remove_contents", &make<RemoveContents>, "true", removingEach},
        {"remove_contents_without_kinds", &make<WithoutKinds<RemoveContents>>, "true", removingEach},
        {"remove_file", &make<RemoveFile>, "true", removingOne},
        {"remove_file_without_kinds", &make<WithoutKinds<RemoveFile>>, "true", removingOne},
        {"remove_deep_tree", &make<RemoveDeepTree>, "true", removing, 3},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
