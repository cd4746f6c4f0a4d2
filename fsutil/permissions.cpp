#include <zorvel/fsutil.h>

#include "platform/files.h"

namespace {

/// The owner's write bit, the same in the mode words of all systems.
const unsigned short ownerWrite = 0x80;

/// Changes a mode to (old & keep) | add and returns the old one. Whether the
/// change succeeded is not looked at: callers hand the result back later.
unsigned short exchangeMode(const char* path, unsigned short keep, unsigned short add)
{
    zorvel::platform::FileStatus status;
    if (zorvel::platform::fileStatus(path, status) != 0)
        return 0;
    zorvel::platform::changeMode(path, static_cast<unsigned short>((status.mode & keep) | add));
    return status.mode;
}

}  // namespace

unsigned short zvGetFilePermissions(const char* path)
{
    zorvel::platform::FileStatus status;
    return zorvel::platform::fileStatus(path, status) == 0 ? status.mode : 0;
}

int zvSetFilePermissions(const char* path, unsigned short mode)
{
    return zorvel::platform::changeMode(path, mode) == 0 ? 0 : -1;
}

unsigned short zvEnableWritePermission(const char* path)
{
    return exchangeMode(path, 0xFFFF, ownerWrite);
}

unsigned short zvDisableWritePermission(const char* path)
{
    return exchangeMode(path, static_cast<unsigned short>(~ownerWrite), 0);
}
