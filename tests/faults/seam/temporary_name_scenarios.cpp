#include "tests/faults/seam/scenario.h"

#include <zorvel/fsutil.h>

#include <gtest/gtest.h>

#include <cstring>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

/// A name behind the directory, and no byte more.
class TemporaryName : public Run
{
public:
    TemporaryName() { std::memset(m_name, 'x', sizeof m_name); }

    std::string act() override { return zvGetTempName(m_name) == m_name ? "name" : "null"; }

    void check(const std::string&, const Faults&) override
    {
        const std::string directory = zvGetTempDir();
        const std::string name = m_name;
        EXPECT_EQ(directory + "tp", name.substr(0, directory.size() + 2));
        EXPECT_EQ(directory.size() + 8, name.size());
        EXPECT_EQ('x', m_name[directory.size() + 9]);
    }

private:
    char m_name[2562 + 16];
};

}  // namespace

Scenarios temporaryNameScenarios()
{
    return {
        {"temporary_name", &make<TemporaryName>, "name", {}},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
