#pragma once

#include "tests/simulation/plan.h"

#include <cstddef>

/// The windows that the protocol accepts: what breaks one of its assumptions,
/// and so can let two in.
namespace zorvel {
namespace sim {

struct Window
{
    const char* name;
    const char* what;
    /// A plan in which this can happen, at random.
    Plan (*plan)(std::uint64_t seed);
};

extern const Window windows[];
extern const std::size_t windowCount;

}  // namespace sim
}  // namespace zorvel
