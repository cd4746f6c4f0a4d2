#pragma once

#include "tests/simulation/plan.h"
#include "tests/simulation/step_pace.h"

#include <string>

namespace zorvel {
namespace sim {

/// Goes through every order in which the steps of a few processes can come, up
/// to the bounds, case after case, and prints a line for each. `which`: the
/// cases whose name begins so. Whether all was well; the first schedule that
/// is not is printed as a table.
bool runExhaustively(const std::string& which, bool withLongCases);

}  // namespace sim
}  // namespace zorvel
