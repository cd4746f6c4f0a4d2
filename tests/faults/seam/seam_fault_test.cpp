#include "tests/faults/seam/runner.h"

#include <gtest/gtest.h>

#include <iostream>

// Every call of the seam that a scenario makes fails in every way that it can,
// once and for ever. The caller gets what is promised, nothing breaks down, and
// no memory, descriptor, thread or lock file stays behind.

namespace {

using namespace zorvel::test::seam;

std::size_t runs = 0;
std::size_t scenarios = 0;

class Totals : public testing::Environment
{
public:
    void TearDown() override
    {
        std::cout << "seam faults: " << runs << " runs over " << scenarios << " scenarios" << std::endl;
    }
};

testing::Environment* const totals = testing::AddGlobalTestEnvironment(new Totals);

class SeamFaults : public testing::TestWithParam<Scenario>
{
};

TEST_P(SeamFaults, EveryCall)
{
    const std::size_t number = runAll(GetParam());
    std::cout << GetParam().name << ": " << number << " runs" << std::endl;
    EXPECT_NE(0u, number) << "a scenario without a call that can fail, or no such fault";
    runs += number;
    ++scenarios;
}

std::string nameOf(const testing::TestParamInfo<Scenario>& scenario)
{
    return scenario.param.name;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, SeamFaults, testing::ValuesIn(wantedScenarios()), &nameOf);

}  // namespace
