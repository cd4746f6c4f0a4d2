#include "fsutil/detail/walk_pattern.h"

#include <zorvel/paths.h>

#include "suite/kpath.h"

#include <cstring>

namespace zorvel {
namespace fsutil {

namespace {

const char everything[] = "*";

/// All entries of a directory: entering it takes one level of depth.
bool enter(const char* directory, int depth, WalkPattern& result)
{
    if (depth < 1)
        return false;
    std::strcpy(result.directory, directory);
    zvWashPathSep(result.directory);
    std::strcpy(result.component, everything);
    result.depth = depth - 1;
    return true;
}

bool split(const char* path, WalkPattern& result)
{
    return kpSeparatePathName(path, result.directory, sizeof result.directory, result.component,
                              sizeof result.component);
}

/// "C:\a\b\" means the entry b of "C:\a", as "C:\a\b" does.
bool splitPastSeparator(WalkPattern& result)
{
    char path[sizeof result.directory];
    std::strcpy(path, result.directory);
    return split(path, result);
}

}  // namespace

bool isSpecialName(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool isCurrentDirectoryForm(const char* path)
{
    return std::strcmp(path, ".") == 0 || std::strcmp(path, ".\\") == 0 || std::strcmp(path, "./") == 0;
}

bool resolveWalkPattern(const char* pattern, int depth, WalkPattern& result)
{
    if (!pattern || !*pattern || strnlen(pattern, patternLimit + 1) > patternLimit)
        return false;
    if (isCurrentDirectoryForm(pattern))
        return enter("", depth, result);
    if (zvIsRootDir(pattern))
        return enter(pattern, depth, result);
    if (!split(pattern, result) || std::strchr(result.directory, '*'))
        return false;
    if (!*result.component && !splitPastSeparator(result))
        return false;
    if (!*result.component || isSpecialName(result.component))
        return false;
    zvWashPathSep(result.directory);
    result.depth = depth;
    return true;
}

}  // namespace fsutil
}  // namespace zorvel
