#include "tests/simulation/posix/one_processor.h"

#include <sched.h>
#include <unistd.h>

namespace zorvel {
namespace sim {

/// Not the one it runs on now: those that are started together would all choose
/// the same.
bool useOneProcessor()
{
    cpu_set_t allowed;
    if (sched_getaffinity(0, sizeof allowed, &allowed) != 0)
        return false;
    int left = getpid() % CPU_COUNT(&allowed);
    int processor = 0;
    while (!CPU_ISSET(processor, &allowed) || left-- > 0)
        ++processor;
    cpu_set_t only;
    CPU_ZERO(&only);
    CPU_SET(processor, &only);
    return sched_setaffinity(0, sizeof only, &only) == 0;
}

}  // namespace sim
}  // namespace zorvel
