#include "suite/qx.h"

#include <cstdlib>

/// Blocks of the suite come from malloc.
void qxFree(void* memory)
{
    std::free(memory);
}

void* qxMallocWithCheck(std::size_t size)
{
    return std::malloc(size);
}
