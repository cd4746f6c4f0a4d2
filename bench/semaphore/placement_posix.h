#pragma once

#include <cstdlib>
#include <stdexcept>
#include <vector>

#include <sched.h>

namespace zorvel {
namespace bench {

/// On which processors two processes run that wake each other. Left to itself the system puts them on one or on two,
/// differently from one moment to the next; who is woken on another processor waits for it some ten times as long.
struct Placement
{
    const char* row;
    cpu_set_t first;
    cpu_set_t second;
};

inline void runOn(const cpu_set_t& processors)
{
    if (::sched_setaffinity(0, sizeof processors, &processors) != 0)
        std::abort();
}

/// The processor with so many before it among some.
inline cpu_set_t processorAt(const cpu_set_t& all, int before)
{
    cpu_set_t one;
    CPU_ZERO(&one);
    for (int i = 0; i < CPU_SETSIZE; ++i) {
        if (CPU_ISSET(i, &all) && before-- == 0)
            CPU_SET(i, &one);
    }
    return one;
}

/// On one processor, on two, and wherever the system puts them. Needs two.
inline std::vector<Placement> placements()
{
    cpu_set_t all;
    if (::sched_getaffinity(0, sizeof all, &all) != 0 || CPU_COUNT(&all) < 2)
        throw std::runtime_error("a handover between two processors needs two of them");
    const cpu_set_t first = processorAt(all, 0);
    const cpu_set_t second = processorAt(all, 1);
    return {{"semaphore-handover-one-processor", first, first},
            {"semaphore-handover-two-processors", first, second},
            {"semaphore-handover", all, all}};
}

}  // namespace bench
}  // namespace zorvel
