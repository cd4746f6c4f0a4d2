#include "tests/simulation/posix/one_processor.h"

#include <sched.h>

namespace zorvel {
namespace sim {

bool useOneProcessor()
{
    const int processor = sched_getcpu();
    if (processor < 0)
        return false;
    cpu_set_t only;
    CPU_ZERO(&only);
    CPU_SET(processor, &only);
    return sched_setaffinity(0, sizeof only, &only) == 0;
}

}  // namespace sim
}  // namespace zorvel
