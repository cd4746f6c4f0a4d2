#include <zorvel/fsutil.h>

#include "platform/files.h"

using zorvel::platform::EntryKind;

bool zvIsDirectory(const char* path)
{
    const EntryKind kind = zorvel::platform::entryKind(path);
    return kind == EntryKind::directory || kind == EntryKind::directoryLink;
}

bool zvFileOrDirExists(const char* path)
{
    return zorvel::platform::entryKind(path) != EntryKind::none;
}

bool zvFileExists(const char* path)
{
    return zorvel::platform::entryKind(path) == EntryKind::file;
}

long long zvGetFileSize(const char* path)
{
    zorvel::platform::FileStatus status;
    // The status carries 32 bits of the size: larger files come out negative or cut, on every system alike.
    return zorvel::platform::fileStatus(path, status) == 0 ? status.size : 0;
}

bool zvGetFileSystemAvailableSpace(const char* path, zvUInt64* available)
{
    if (!available)
        return false;
    *available = ~zvUInt64(0);
    std::uint64_t bytes = 0;
    if (!zorvel::platform::availableSpace(path, bytes))
        return false;
    *available = bytes;
    return true;
}
