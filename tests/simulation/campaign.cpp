#include "tests/simulation/campaign.h"

#include "tests/simulation/shrink.h"
#include "tests/simulation/windows.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <set>

namespace zorvel {
namespace sim {

namespace {

/// The seed of the printed schedule is enough to run it again.
bool show(const Plan& plan, const std::set<Choices::Key>* only, bool isTraced)
{
    Trace trace(isTraced);
    const Outcome outcome = runSchedule(plan, trace, only);
    trace.print(std::cout, only != nullptr);
    for (const Violation& violation : outcome.violations)
        if (!only)
            std::cout << nameOf(violation.wrong) << ": " << violation.text << '\n';
    if (!outcome.hasFailed())
        std::cout << "nothing went wrong; " << outcome.holds << " holds\n";
    std::cout << std::flush;
    return !outcome.hasFailed();
}

/// The gravest.
const Violation& worstOf(const Outcome& outcome)
{
    return *std::min_element(outcome.violations.begin(), outcome.violations.end(),
                             [](const Violation& a, const Violation& b) { return a.wrong < b.wrong; });
}

bool hasTwoHolders(const Outcome& outcome)
{
    return outcome.hasFailed() && worstOf(outcome).wrong == Wrong::twoHolders;
}

bool showShrunk(const Plan& plan, Wrong wrong, bool isTraced)
{
    const Minimal minimal = shrink(plan, wrong);
    return show(minimal.plan, &minimal.choices, isTraced);
}

/// What several schedules came to.
struct Sum
{
    std::uint64_t schedules = 0;
    std::uint64_t failed = 0;
    std::uint64_t firstFailed = 0;
    long holds = 0;
    int mostOvertaken = 0;
    Time simulated = 0;

    void add(std::uint64_t seed, const Outcome& outcome, bool isBad)
    {
        ++schedules;
        holds += outcome.holds;
        simulated += outcome.lasted;
        mostOvertaken = std::max(mostOvertaken, outcome.mostOvertaken);
        if (isBad && failed++ == 0)
            firstFailed = seed;
    }
};

}  // namespace

bool runOne(Planner planner, std::uint64_t seed, bool isTraced, bool isShrunk)
{
    const Plan plan = planner(seed);
    if (!isShrunk)
        return show(plan, nullptr, isTraced);
    Trace silent(false);
    const Outcome outcome = runSchedule(plan, silent);
    return outcome.hasFailed() ? showShrunk(plan, worstOf(outcome).wrong, isTraced) : show(plan, nullptr, isTraced);
}

bool runMany(Planner planner, std::uint64_t first, std::uint64_t count, bool isBrief)
{
    Sum sum;
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        const Plan plan = planner(seed);
        Trace silent(false);
        const Outcome outcome = runSchedule(plan, silent);
        sum.add(seed, outcome, outcome.hasFailed());
        if (outcome.hasFailed()) {
            const Violation& violation = worstOf(outcome);
            std::cout << "seed " << seed << ", schedule " << sum.schedules << ": " << nameOf(violation.wrong) << ": "
                      << violation.text << std::endl;
            if (!isBrief)
                showShrunk(plan, violation.wrong, true);
            return false;
        }
    }
    std::cout << sum.schedules << " schedules, " << sum.holds << " holds in " << sum.simulated / (3600 * second)
              << " simulated hours, 0 violations; overtaken by newcomers at most " << sum.mostOvertaken << " times"
              << std::endl;
    return true;
}

bool runWindows(std::uint64_t count)
{
    bool areAllFound = true;
    for (std::size_t i = 0; i < windowCount; ++i) {
        Sum sum;
        for (std::uint64_t seed = 1; seed <= count; ++seed) {
            Trace silent(false);
            const Outcome outcome = runSchedule(windows[i].plan(seed), silent);
            sum.add(seed, outcome, hasTwoHolders(outcome));
        }
        std::cout << std::left << std::setw(22) << windows[i].name << std::right << std::setw(6) << sum.failed << " of "
                  << sum.schedules << " schedules have two holders";
        if (sum.failed > 0)
            std::cout << ", the first with seed " << sum.firstFailed;
        std::cout << std::endl;
        areAllFound = areAllFound && sum.failed > 0;
    }
    return areAllFound;
}

}  // namespace sim
}  // namespace zorvel
