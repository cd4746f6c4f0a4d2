#include "suite/qx.h"

#include <cstdlib>

/// Blocks of the suite come from malloc.
void qxFree(void* memory)
{
    std::free(memory);
}
