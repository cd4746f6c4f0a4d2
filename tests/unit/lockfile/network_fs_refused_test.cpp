#include "tests/support/child.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

// Directories and files that the caller may not write to, by their
// permissions. The child mode "refused" prints what was thrown, the number of
// sleeps, and the number of those that took ten milliseconds.

namespace {

using namespace zorvel::test;

class RefusedByPermissions : public testing::Test
{
protected:
    RefusedByPermissions()
    {
        m_tree.directory("refused");
        m_tree.file("refused\\file");
        m_tree.makeReadOnly("refused\\file");
        m_tree.makeReadOnly("refused");
    }

    static std::string run(const std::string& operation, const std::string& name)
    {
        ProcessOptions options;
        options.unprivileged = true;
        return runChild("refused", {operation, name}, options).output;
    }

    static std::string denied(const std::string& name)
    {
        return "denied Tried to obtain a lock on a directory without write permission: " + name;
    }

    TemporaryTree m_tree;
    const std::string m_file = m_tree.path("refused\\file");
    const std::string m_missing = m_tree.path("refused\\missing");
};

TEST_F(RefusedByPermissions, ARefreshIsTriedForHalfASecondThenThrown)
{
    EXPECT_EQ(denied(m_file) + " 50 50\n", run("refresh", m_file));
    EXPECT_EQ(denied(m_missing) + " 50 50\n", run("refresh", m_missing));
}

TEST_F(RefusedByPermissions, ACreationIsTriedForHalfASecondThenThrown)
{
    EXPECT_EQ(denied(m_missing) + " 50 50\n", run("create", m_missing));
    EXPECT_FALSE(m_tree.exists("refused\\missing"));
}

TEST_F(RefusedByPermissions, ACreationOfWhatExistsAnswersFalseAtOnce)
{
    EXPECT_EQ("done 0 0\n", run("create", m_file));
}

TEST_F(RefusedByPermissions, ARemovalOfWhatIsMissingAnswersFalseAtOnce)
{
    EXPECT_EQ("done 0 0\n", run("remove", m_missing));
}

}  // namespace
