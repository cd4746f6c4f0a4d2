#include "platform/files.h"

#include "platform/windows/error_code.h"

#include <windows.h>

#include <direct.h>
#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <limits.h>
#include <stdio.h>
#include <sys/stat.h>

namespace zorvel {
namespace platform {

namespace {

/// Seconds between 1601-01-01 and 1970-01-01, and ticks of 100 ns per second.
const std::int64_t epochSeconds = 11644473600;
const std::int64_t ticksPerSecond = 10000000;

int codeOf(int result)
{
    return result == 0 ? 0 : errno;
}

/// Whether the last character of a path is a double-byte one whose second byte
/// is 0x5C.
bool endsInBackslashTrail(const char* path)
{
    bool isTrail = false;
    for (const char* p = path; *p; ++p) {
        isTrail = IsDBCSLeadByte(static_cast<BYTE>(*p)) && p[1];
        if (isTrail)
            ++p;
        if (!p[1])
            return isTrail && *p == '\\';
    }
    return false;
}

std::int64_t secondsOf(const FILETIME& time)
{
    const std::int64_t ticks =
        static_cast<std::int64_t>((static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime);
    return ticks / ticksPerSecond - epochSeconds;
}

/// What _stat64i32 says, for the names that it mistakes: MinGW's runtime takes
/// a final byte 0x5C for a separator and cuts it off.
int statusByAttributes(const char* path, FileStatus& result)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExA(path, GetFileExInfoStandard, &data))
        return windows::codeOfLookup(GetLastError());
    const bool isDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool isReadOnly = (data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    result.mode = static_cast<unsigned short>((isDirectory ? _S_IFDIR | 0111 : _S_IFREG) | (isReadOnly ? 0444 : 0666));
    result.size = isDirectory ? 0 : static_cast<std::int32_t>(data.nFileSizeLow);
    result.modificationTime = secondsOf(data.ftLastWriteTime);
    return 0;
}

}  // namespace

EntryKind entryKind(const char* path)
{
    const DWORD attributes = path ? GetFileAttributesA(path) : INVALID_FILE_ATTRIBUTES;
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return EntryKind::none;
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY))
        return EntryKind::file;
    return attributes & FILE_ATTRIBUTE_REPARSE_POINT ? EntryKind::directoryLink : EntryKind::directory;
}

int fileStatus(const char* path, FileStatus& result)
{
    if (!path)
        return ENOENT;
    if (endsInBackslashTrail(path))
        return statusByAttributes(path, result);
    struct _stat64i32 status;
    if (_stat64i32(path, &status) != 0)
        return errno;
    result.mode = status.st_mode;
    result.size = status.st_mode & _S_IFDIR ? 0 : static_cast<std::int32_t>(status.st_size);
    result.modificationTime = status.st_mtime;
    return 0;
}

int modificationTime(const char* path, std::int64_t& seconds)
{
    FileStatus status;
    const int code = fileStatus(path, status);
    if (code == 0)
        seconds = status.modificationTime;
    return code;
}

/// Whoever removes or opens the file meanwhile is let.
int modificationTimeAtServer(const char* path, std::int64_t& seconds)
{
    if (!path)
        return ENOENT;
    const DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file =
        CreateFileA(path, FILE_READ_ATTRIBUTES, all, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return windows::codeOfLookup(GetLastError());
    FILETIME written;
    const bool known = GetFileTime(file, nullptr, nullptr, &written);
    const int code = known ? 0 : windows::codeOfLookup(GetLastError());
    CloseHandle(file);
    if (known)
        seconds = secondsOf(written);
    return code;
}

int changeMode(const char* path, unsigned short mode)
{
    return path ? codeOf(_chmod(path, mode)) : ENOENT;
}

bool availableSpace(const char* directory, std::uint64_t& bytes)
{
    ULARGE_INTEGER free;
    ULARGE_INTEGER total;
    if (!directory || !GetDiskFreeSpaceExA(directory, &free, &total, nullptr))
        return false;
    bytes = free.QuadPart;
    return true;
}

int makeDirectory(const char* path)
{
    return path ? codeOf(_mkdir(path)) : ENOENT;
}

int removeFile(const char* path)
{
    return path ? codeOf(remove(path)) : ENOENT;
}

int WritableFile::open(const char* path, OpenMode mode)
{
    close();
    if (!path)
        return ENOENT;
    // Binary: in text mode a byte 0x0A of the data would become two in the file.
    const int flags = _O_WRONLY | _O_CREAT | _O_BINARY | _O_NOINHERIT | (mode == OpenMode::createNew ? _O_EXCL : 0);
    m_descriptor = _open(path, flags, _S_IREAD | _S_IWRITE);
    return m_descriptor != -1 ? 0 : errno;
}

int WritableFile::write(const void* data, std::size_t size)
{
    if (m_descriptor == -1)
        return EBADF;
    if (size > INT_MAX)
        return EINVAL;
    if (_lseek(m_descriptor, 0, SEEK_SET) != 0)
        return errno;
    const int written = _write(m_descriptor, data, static_cast<unsigned int>(size));
    if (written == -1)
        return errno;
    return static_cast<std::size_t>(written) == size ? 0 : EIO;
}

int WritableFile::flush()
{
    return m_descriptor != -1 ? codeOf(_commit(m_descriptor)) : EBADF;
}

void WritableFile::close()
{
    if (m_descriptor != -1)
        _close(m_descriptor);
    m_descriptor = -1;
}

}  // namespace platform
}  // namespace zorvel
