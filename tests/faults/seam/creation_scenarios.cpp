#include "tests/faults/seam/scenario.h"
#include "tests/support/temporary_tree.h"

#include <zorvel/fsutil.h>
#include <zorvel/lockfile.h>

#include <gtest/gtest.h>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

class Create : public Run
{
public:
    std::string act() override { return textOf(zvMkdirP(path().c_str())); }

    void check(const std::string& ending, const Faults& faults) override
    {
        // Of a directory that is said to be there nothing is made.
        const bool isSaidToBe = contains(faults, entryKind);
        if (ending == "true" && !isSaidToBe) {
            EXPECT_TRUE(m_tree.exists("a\\b\\c"));
        }
        EXPECT_TRUE(zvMkdirP(path().c_str())) << "on a healthy system";
        EXPECT_TRUE(m_tree.exists("a\\b\\c"));
        EXPECT_EQ(std::vector<std::string>{"a"}, m_tree.names());
    }

private:
    std::string path() const { return m_tree.path("a\\b/c"); }

    const TemporaryTree m_tree;
};

}  // namespace

Scenarios creationScenarios()
{
    return {
        {"create_directories",
         &make<Create>,
         "true",
         {{entryKind, "directory link", Persistence::ever, "true"},
          {entryKind, "", Persistence::both, "true false"},
          {makeDirectory, "", Persistence::both, "false"}}},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
