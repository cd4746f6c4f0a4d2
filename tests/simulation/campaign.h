#pragma once

#include "tests/simulation/plan.h"

#include <cstdint>

/// What the program does with schedules. Each prints what it found.
namespace zorvel {
namespace sim {

typedef Plan (*Planner)(std::uint64_t seed);

/// One schedule, with its table if asked; shrunk before, if asked and if it
/// goes wrong. Whether all was well.
bool runOne(Planner planner, std::uint64_t seed, bool isTraced, bool isShrunk);

/// Many schedules. At the first that goes wrong it stops, shrinks it and prints
/// its table, or in brief only its seed. Whether none did.
bool runMany(Planner planner, std::uint64_t first, std::uint64_t count, bool isBrief);

/// Many schedules of each window. Whether each has led to two holders.
bool runWindows(std::uint64_t count);

}  // namespace sim
}  // namespace zorvel
