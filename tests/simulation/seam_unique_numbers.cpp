#include "dirlock/detail/unique_numbers.h"

#include "tests/simulation/process.h"

// The program links with --wrap: every simulated process draws numbers of its own, as processes do.

namespace zorvel {
namespace dirlock {

UniqueNumbers& ofSimulatedProcess() __asm__(ZORVEL_UNIQUE_NUMBERS_WRAPPED);

UniqueNumbers& ofSimulatedProcess()
{
    return sim::Process::current()->numbers;
}

}  // namespace dirlock
}  // namespace zorvel
