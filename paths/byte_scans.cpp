#include "paths/byte_scans.h"

namespace zorvel {
namespace paths {
namespace {

bool processorHasWideBlocks()
{
#if defined(ZORVEL_WIDE_BLOCKS)
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("gfni") && __builtin_cpu_supports("bmi2");
#else
    return false;
#endif
}

}  // namespace

const bool blocksAreWide = processorHasWideBlocks();

}  // namespace paths
}  // namespace zorvel
