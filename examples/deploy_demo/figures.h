#pragma once

#include "examples/deploy_demo/history.h"

#include <ostream>
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
    int acquired = 0;
    Waits all;
    /// Without the waits that a dead holder's lock was part of.
    Waits ordinary;
};

struct Handovers
{
    int count = 0;
    Microseconds median = 0;
    Microseconds longest = 0;
};

struct Figures
{
    std::vector<MemberFigures> members;
    int acquired = 0;
    /// From a release to the next hold, where somebody was queued already.
    Handovers handovers;
    /// Holds that began before an earlier one had ended.
    int overlapsOfIntervals = 0;
};

/// Of a finished history.
Figures figuresOf(const History& history);

void printTable(std::ostream& out, const History& history, const Figures& figures);

}  // namespace demo
}  // namespace zorvel
