#include "platform/windows/error_code.h"

#include <windows.h>

#include <errno.h>

namespace zorvel {
namespace platform {
namespace windows {

int codeOfLookup(unsigned long error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_INVALID_DRIVE:
    case ERROR_NO_MORE_FILES: return ENOENT;
    case ERROR_DIRECTORY: return ENOTDIR;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_NETWORK_ACCESS_DENIED: return EACCES;
    case ERROR_TOO_MANY_OPEN_FILES: return EMFILE;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY: return ENOMEM;
    default: return EIO;
    }
}

}  // namespace windows
}  // namespace platform
}  // namespace zorvel
