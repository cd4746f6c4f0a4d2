#pragma once

#include "examples/deploy_demo/history.h"

#include <vector>

namespace zorvel {
namespace demo {

struct Waits
{
    int count = 0;
    Microseconds mean = 0;
    Microseconds longest = 0;
};

struct MemberFigures
{
    int holds = 0;
    Waits all;
    /// Without the waits that a dead process's lock was part of.
    Waits ordinary;
};

/// From the end of the last hold in somebody's way to his own.
struct Handovers
{
    int count = 0;
    Microseconds median = 0;
    Microseconds longest = 0;
};

struct Figures
{
    std::vector<MemberFigures> members;
    int holds = 0;
    Handovers toReaders;
    Handovers toWriters;
    /// Holds of a writer that met, by their times, any other hold. A dead
    /// process holds until its lock file is removed.
    int overlapsOfIntervals = 0;
    /// Other writers between the beginning of a hold that was downgraded and
    /// the end of the reading that followed.
    int intruders = 0;
    /// Sums of all members.
    Readings readings;
};

/// Of a finished history.
Figures figuresOf(const History& history);

}  // namespace demo
}  // namespace zorvel
