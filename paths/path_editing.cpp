#include <zorvel/paths.h>

#include "paths/byte_scans.h"

#include <cstring>

/// The last byte is looked at without the lead-byte test. Callers rely on it:
/// do not make it aware of double-byte characters.
bool zvAddPathSep(char* s)
{
    if (s == nullptr)
        return false;
    const std::size_t length = std::strlen(s);
    if (length > 0 && s[length - 1] == '\\')
        return true;
    if (length > 0 && s[length - 1] == '/') {
        s[length - 1] = '\\';
        return true;
    }
    s[length] = '\\';
    s[length + 1] = '\0';
    return true;
}

int zvAddPathSepAt(char* s, int index)
{
    if (s == nullptr || index < 0)
        return 0;
    const std::size_t at = static_cast<std::size_t>(index);
    const std::size_t length = std::strlen(s);
    if (at > length || (at > 0 && zvIsPathSep(s[at - 1])))
        return 0;
    std::memmove(s + at + 1, s + at, length - at + 1);
    s[at] = '\\';
    return 1;
}

/// Byte by byte on purpose, also inside double-byte characters.
void zvReplacePathSeps(char* s, char c)
{
    if (s == nullptr)
        return;
    for (; *s != '\0'; ++s) {
        if (zvIsPathSep(*s))
            *s = c;
    }
}

/// Byte by byte on purpose, also inside double-byte characters.
void zvWashPathSep(char* s)
{
    if (s != nullptr)
        zorvel::paths::writeBackslashes(s, std::strlen(s), nullptr);
}
