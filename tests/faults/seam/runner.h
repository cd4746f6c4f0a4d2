#pragma once

#include "tests/faults/seam/scenario.h"

namespace zorvel {
namespace test {
namespace seam {

/// Runs a scenario once without a fault and then with each: every function of
/// the seam that it calls, every call of it, every way to fail, once and for
/// ever. Returns the number of runs with a fault. Failures name the run:
///
///     ZORVEL_FAULT="scenario function call answer once|ever" seam_fault_test
///
/// makes that run alone. With ZORVEL_FAULT_ENDINGS set every ending is printed.
std::size_t runAll(const Scenario& scenario);

/// The scenarios that this process is to run.
Scenarios wantedScenarios();

}  // namespace seam
}  // namespace test
}  // namespace zorvel
