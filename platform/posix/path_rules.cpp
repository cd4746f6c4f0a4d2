#include "platform/path_rules.h"

namespace zorvel {
namespace platform {

/// "C:" is an ordinary name.
std::size_t drivePrefixLength(const char*)
{
    return 0;
}

bool isAbsolutePath(const char* path)
{
    return path != nullptr && (path[0] == '\\' || path[0] == '/');
}

}  // namespace platform
}  // namespace zorvel
