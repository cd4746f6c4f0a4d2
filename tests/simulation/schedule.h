#pragma once

#include "tests/simulation/choices.h"
#include "tests/simulation/judge.h"
#include "tests/simulation/plan.h"
#include "tests/simulation/trace.h"

#include <set>
#include <vector>

namespace zorvel {
namespace sim {

/// What became of a schedule.
struct Outcome
{
    std::vector<Violation> violations;
    std::vector<Choices::Key> choices;  ///< what befell its steps
    Time lasted = 0;
    long holds = 0;
    int mostOvertaken = 0;

    bool hasFailed() const { return !violations.empty(); }
};

/// Lets a plan happen. With `only`, nothing befalls its steps but these.
Outcome runSchedule(const Plan& plan, Trace& trace, const std::set<Choices::Key>* only = nullptr);

}  // namespace sim
}  // namespace zorvel
