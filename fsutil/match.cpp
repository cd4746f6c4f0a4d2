#include "fsutil/match.h"

#include "fsutil/detail/path_buffer.h"
#include "fsutil/detail/walk_pattern.h"
#include "platform/directory.h"

#include <cerrno>

namespace zorvel {

namespace {

using fsutil::WalkPattern;

bool resolve(const char* pattern, WalkPattern& resolved)
{
    return fsutil::resolveWalkPattern(pattern, 0, resolved);
}

bool saysThatNothingIsThere(int code)
{
    return code == ENOENT || code == ENOTDIR;
}

}  // namespace

bool canBeSearched(const char* pattern)
{
    WalkPattern resolved;
    return resolve(pattern, resolved);
}

int findMatch(const char* pattern, bool& found)
{
    found = false;
    WalkPattern resolved;
    if (!resolve(pattern, resolved))
        return 0;
    fsutil::PathBuffer path(resolved.directory);
    if (!path.append(resolved.component))
        return 0;
    platform::DirectorySearch search;
    const int code = search.open(path.c_str());
    if (code != 0)
        return saysThatNothingIsThere(code) ? 0 : code;
    search.forgetEarlierListing();
    while (const char* name = search.next()) {
        if (fsutil::isSpecialName(name))
            continue;
        found = true;
        return 0;
    }
    return search.code();
}

}  // namespace zorvel
