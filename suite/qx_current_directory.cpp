#include "suite/qx.h"

#include "platform/path_rules.h"

char* qxGetcwd(char* buffer, std::size_t size)
{
    return zorvel::platform::fullPath(".", buffer, size) ? buffer : nullptr;
}
