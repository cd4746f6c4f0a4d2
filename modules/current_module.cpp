#include <zorvel/modules.h>

#include "platform/modules.h"

#include <algorithm>
#include <cstring>

bool zvGetCurrentModulePath(void* module, char* buffer, unsigned long size)
{
    if (!buffer)
        return false;
    std::memset(buffer, 0, size);
    const unsigned long room = std::min(size, 0xFFFFFFFFul);
    return zorvel::platform::moduleFileName(module, buffer, static_cast<std::uint32_t>(room)) != 0;
}
