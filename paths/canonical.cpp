#include <zorvel/paths.h>

#include "platform/path_rules.h"
#include "suite/kpath.h"

#include <cctype>
#include <cstring>

namespace platform = zorvel::platform;

namespace {

/// The input is copied when it is shorter than this; a longer one is used in
/// place and read up to its own NUL.
const std::size_t workSize = 2562;

bool isSpace(char byte)
{
    return std::isspace(static_cast<unsigned char>(byte)) != 0;
}

std::size_t leadingSpace(const char* text, std::size_t length)
{
    std::size_t count = 0;
    while (count < length && isSpace(text[count]))
        ++count;
    return count;
}

/// The length of the text before a NUL, at most limit.
std::size_t boundedLength(const char* text, std::size_t limit)
{
    const void* const end = std::memchr(text, '\0', limit);
    return end == nullptr ? limit : static_cast<std::size_t>(static_cast<const char*>(end) - text);
}

/// The canonical form of an absolute path in out, which may be the path; empty
/// when it does not fit.
void putCanonical(const char* path, char* out, std::size_t outSize)
{
    char canonical[platform::canonicalPathSize];
    const bool isDone = platform::canonicalize(path, canonical);
    const std::size_t size = std::strlen(canonical) + 1;
    if (isDone && size <= outSize)
        std::memcpy(out, canonical, size);
    else
        out[0] = '\0';
}

/// Puts the absolute form of a path into out; false when the system cannot.
bool makeAbsolute(const char* path, char* out, std::size_t outSize)
{
    if (out == nullptr || outSize == 0)
        return false;
    if (!kpIsAbsolutePath(path))
        return platform::fullPath(path, out, outSize);
    putCanonical(path, out, outSize);
    return true;
}

/// What the caller gets of its own input when no absolute form can be made: a
/// terminated one without its leading space, an unterminated one as it is. The
/// byte behind the input is read only where the answer depends on it.
const char* ownInput(const char* in, std::size_t inLen, std::size_t length, std::size_t skipped)
{
    const bool terminated = skipped == 0 || length < inLen || in[inLen] == '\0';
    return terminated ? in + skipped : in;
}

}  // namespace

char* zvCollapsePath(char* out, const char* in)
{
    if (out == nullptr)
        return nullptr;
    if (in == nullptr || !platform::canonicalize(in, out))
        out[0] = '\0';
    return out;
}

/// Trailing space is counted, not cut off: it only decides whether a name is
/// left. The returned pointer never leads into this function's own buffer.
const char* zvCanonicalizePath(char* out, std::size_t outSize, const char* in, std::size_t inLen)
{
    if (in == nullptr)
        return nullptr;
    char work[workSize];
    const std::size_t length = boundedLength(in, inLen);
    const bool copied = inLen < workSize;
    if (copied) {
        std::memcpy(work, in, length);
        work[length] = '\0';
    }
    const std::size_t skipped = leadingSpace(in, length);
    if (skipped == length)
        return makeAbsolute(".", out, outSize) ? out : ".";
    if (makeAbsolute((copied ? work : in) + skipped, out, outSize))
        return out;
    return copied ? ownInput(in, inLen, length, skipped) : in + skipped;
}
