#include <zorvel/paths.h>

#include "suite/qx.h"

#include <cstring>

bool zvIsRootDir(const char* s)
{
    // Every root ends in a separator; most paths asked about do not.
    if (s == nullptr || *s == '\0' || !zvIsPathSep(s[std::strlen(s) - 1]))
        return false;
    return qxRegexpi(s, R"(^(\\|/|(([a-z])*\:(\\|/)))$)");
}
