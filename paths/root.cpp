#include <zorvel/paths.h>

#include "suite/qx.h"

#include <cstring>

bool zvIsRootDir(const char* s)
{
    // Every root ends in a separator, and in a longer one a colon stands before
    // it; most paths asked about do not end so.
    const std::size_t length = s == nullptr ? 0 : std::strlen(s);
    if (length == 0 || !zvIsPathSep(s[length - 1]) || (length > 1 && s[length - 2] != ':'))
        return false;
    return qxRegexpi(s, R"(^(\\|/|(([a-z])*\:(\\|/)))$)");
}
