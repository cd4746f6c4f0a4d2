#include "platform/path_rules.h"

#include <windows.h>

#include <shlwapi.h>

#include <cstdlib>
#include <cstring>

namespace zorvel {
namespace platform {
namespace {

static_assert(canonicalPathSize == MAX_PATH, "PathCanonicalizeA writes up to MAX_PATH bytes");

bool isSeparator(char byte)
{
    return byte == '\\' || byte == '/';
}

bool isLetter(char byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

}  // namespace

std::size_t drivePrefixLength(const char* path)
{
    return path != nullptr && isLetter(path[0]) && path[1] == ':' ? 2 : 0;
}

bool isAbsolutePath(const char* path)
{
    if (path == nullptr)
        return false;
    if (drivePrefixLength(path) == 2)
        return isSeparator(path[2]);
    return isSeparator(path[0]) && isSeparator(path[1]);
}

/// The service takes a text of MAX_PATH characters at most. It works on wide
/// characters: a byte that is none in the code page may come back as two, so
/// the result is refused when it reaches the last byte of the buffer.
bool canonicalize(const char* in, char* out)
{
    char result[canonicalPathSize];
    result[canonicalPathSize - 1] = '\0';
    const bool fits = in != nullptr && strnlen(in, canonicalPathSize) < canonicalPathSize &&
                      PathCanonicalizeA(result, in) && result[canonicalPathSize - 1] == '\0';
    std::strcpy(out, fits ? result : "");
    return fits;
}

bool fullPath(const char* in, char* out, std::size_t size)
{
    // A null buffer would have the runtime allocate one.
    if (in == nullptr || out == nullptr || size == 0)
        return false;
    return _fullpath(out, in, size) != nullptr;
}

}  // namespace platform
}  // namespace zorvel
