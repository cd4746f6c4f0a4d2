#pragma once

#include "tests/simulation/schedule.h"

#include <set>

namespace zorvel {
namespace sim {

/// A schedule that goes wrong, with as little in it as could be found.
struct Minimal
{
    Plan plan;
    std::set<Choices::Key> choices;
};

/// Takes out of a plan, and of what befalls its steps, whatever is not needed
/// for the same thing to go wrong. The plan must go wrong.
Minimal shrink(const Plan& plan, Wrong wrong);

}  // namespace sim
}  // namespace zorvel
