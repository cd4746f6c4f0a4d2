#include "tests/hosts/machines.h"
#include "tests/hosts/one_waits.h"

#include <gtest/gtest.h>

#include <iostream>

using namespace zorvel::test;

namespace {

/// Three times as long as a file may stay without a refresh.
const int holdMsec = 90 * 1000;

const std::vector<std::pair<std::string, std::string>> roles = {{"asking-exclusive", "asking-exclusive"},
                                                                {"asking-reader", "asking-writer"},
                                                                {"asking-writer", "asking-reader"}};

}  // namespace

/// All at once: it takes as long as one.
TEST(LongHold, IsNeverJudgedStale)
{
    std::vector<std::pair<Part, Part>> parts;
    for (const auto& pair : roles)
        parts.emplace_back(Part{pair.first, 1, holdMsec, 0}, Part{pair.second, 1, 0, 0});
    for (const auto& one : beginOnAllShares(parts)) {
        one->finish();
        EXPECT_EQ(0, one->holderStatus()) << one->what();
        EXPECT_EQ(0, one->waiterStatus()) << one->what();
        EXPECT_FALSE(one->wereInsideTogether()) << one->what();
        EXPECT_EQ(std::vector<std::string>(), one->directory().lockFiles()) << one->what();
        std::cout << "figures: " << setting("ZORVEL_PAIR") << ", " << one->what() << ' ' << holdMsec / 1000
                  << " s: " << (one->wereInsideTogether() ? "TAKEN" : "kept") << ", the other came "
                  << secondsBetween(one->left(), one->came()) << " s after the end" << std::endl;
    }
}
