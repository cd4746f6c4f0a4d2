#include "tests/faults/seam/supervised_run.h"

#include "tests/faults/seam/residue.h"
#include "tests/faults/seam/scenario.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>

namespace zorvel {
namespace test {
namespace seam {

namespace {

int failures()
{
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

/// Spread over the questions without a step, because ways to fail come in turns.
bool isInShare()
{
    static const unsigned share = static_cast<unsigned>(std::max(1, std::atoi(setting("ZORVEL_FAULT_SHARE").c_str())));
    static std::uint32_t asked = 0;
    return (++asked * 2654435769u >> 8) % share == 0;
}

}  // namespace

void runOnce(const std::string& name, const std::function<void()>& run)
{
    const Announcement announcement(name);
    SCOPED_TRACE("ZORVEL_FAULT=\"" + name + "\"");
    run();
}

void runForLeaks(const std::string& name, const std::function<void()>& run)
{
    const Announcement announcement(name);
    SCOPED_TRACE("ZORVEL_FAULT=\"" + name + "\"");
    // Failures are kept too, and are worse.
    const int failuresBefore = failures();
    for (int attempts = 3;; --attempts) {
        const Residue before;
        run();
        const std::string leak = Residue::growthSince(before);
        if (leak.empty() || failures() != failuresBefore)
            return;
        if (attempts == 1) {
            ADD_FAILURE() << leak << "stay behind";
            return;
        }
    }
}

bool isWanted(const std::string& name, bool isAlways)
{
    static const std::string wanted = setting("ZORVEL_FAULT");
    const bool isShared = isInShare();
    return wanted.empty() ? isAlways || isShared : wanted == name;
}

void Endings::remember(const std::string& fault, const std::string& ending)
{
    Words words = wordsOf(fault);
    words.erase(words.begin() + 1);
    std::string text;
    for (const std::string& word : words)
        text += word + ' ';
    m_endings[text].insert(ending);
}

void Endings::print(const std::string& scenario) const
{
    if (setting("ZORVEL_FAULT_ENDINGS").empty())
        return;
    for (const auto& each : m_endings) {
        std::cout << scenario << ": " << each.first << "=>";
        for (const std::string& ending : each.second)
            std::cout << ' ' << ending;
        std::cout << '\n';
    }
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
