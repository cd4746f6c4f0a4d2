#include "platform/files.h"

#include "platform/posix/native_path.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace zorvel {
namespace platform {

using posix::NativePath;

namespace {

/// 0 for success, else errno; a null path is refused before it gets here.
int codeOf(int result)
{
    return result == 0 ? 0 : errno;
}

bool isDirectoryItself(const char* path)
{
    struct stat status;
    return lstat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

int sync(int descriptor)
{
    int result = 0;
    do
        result = fsync(descriptor);
    while (result == -1 && errno == EINTR);
    return codeOf(result);
}

EntryKind linkKind(const char* path)
{
    struct stat target;
    return stat(path, &target) == 0 && S_ISDIR(target.st_mode) ? EntryKind::directoryLink : EntryKind::file;
}

}  // namespace

EntryKind entryKind(const char* path)
{
    const NativePath native(path);
    struct stat status;
    if (!native.c_str() || fstatat(AT_FDCWD, native.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return EntryKind::none;
    if (S_ISLNK(status.st_mode))
        return linkKind(native.c_str());
    return S_ISDIR(status.st_mode) ? EntryKind::directory : EntryKind::file;
}

int fileStatus(const char* path, FileStatus& result)
{
    const NativePath native(path);
    struct stat status;
    if (!native.c_str())
        return ENOENT;
    if (stat(native.c_str(), &status) != 0)
        return errno;
    result.mode = static_cast<unsigned short>(status.st_mode);
    result.size = S_ISDIR(status.st_mode) ? 0 : static_cast<std::int32_t>(static_cast<std::uint32_t>(status.st_size));
    result.modificationTime = status.st_mtime;
    return 0;
}

/// A plain stat could be answered by a client of NFS with what it learnt up to
/// a minute ago, be it about a file of the same name that is gone.
int modificationTime(const char* path, std::int64_t& seconds)
{
    const NativePath native(path);
    struct statx status;
    if (!native.c_str())
        return ENOENT;
    if (statx(AT_FDCWD, native.c_str(), AT_STATX_FORCE_SYNC, STATX_MTIME, &status) != 0)
        return errno == ESTALE ? ENOENT : errno;
    seconds = status.stx_mtime.tv_sec;
    return 0;
}

int modificationTimeAtServer(const char* path, std::int64_t& seconds)
{
    return modificationTime(path, seconds);
}

int changeMode(const char* path, unsigned short mode)
{
    const NativePath native(path);
    return native.c_str() ? codeOf(chmod(native.c_str(), mode & 07777)) : ENOENT;
}

bool availableSpace(const char* directory, std::uint64_t& bytes)
{
    const NativePath native(directory);
    struct statvfs status;
    if (!native.c_str() || statvfs(native.c_str(), &status) != 0)
        return false;
    bytes = static_cast<std::uint64_t>(status.f_bavail) * status.f_frsize;
    return true;
}

int makeDirectory(const char* path)
{
    const NativePath native(path);
    return native.c_str() ? codeOf(mkdir(native.c_str(), 0777)) : ENOENT;
}

int removeFile(const char* path)
{
    const NativePath native(path);
    if (!native.c_str())
        return ENOENT;
    const int code = codeOf(unlink(native.c_str()));
    // File systems differ in what they call the refusal to unlink a directory.
    if (code == EISDIR || (code == EPERM && isDirectoryItself(native.c_str())))
        return EACCES;
    return code;
}

int WritableFile::open(const char* path, OpenMode mode)
{
    close();
    const NativePath native(path);
    if (!native.c_str())
        return ENOENT;
    const int exclusive = mode == OpenMode::createNew ? O_EXCL : 0;
    do
        m_descriptor = ::open(native.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | exclusive, 0666);
    while (m_descriptor == -1 && errno == EINTR);
    if (m_descriptor != -1)
        return 0;
    return errno == EISDIR ? EACCES : errno;
}

int WritableFile::write(const void* data, std::size_t size)
{
    if (m_descriptor == -1)
        return EBADF;
    ssize_t written = 0;
    do
        written = pwrite(m_descriptor, data, size, 0);
    while (written == -1 && errno == EINTR);
    if (written == -1)
        return errno;
    return static_cast<std::size_t>(written) == size ? 0 : EIO;
}

/// What a file system of this machine has was seen by everybody when it was
/// written, and NFS sends it off when the file is closed. A file system that
/// does not say what it is may be any: that it was asked is nobody's failure.
int WritableFile::flush()
{
    struct statfs system;
    if (fstatfs(m_descriptor, &system) != 0)
        return sync(m_descriptor);
    const std::uint32_t type = static_cast<std::uint32_t>(system.f_type);
    return type == CIFS_SUPER_MAGIC || type == SMB2_SUPER_MAGIC ? sync(m_descriptor) : 0;
}

void WritableFile::close()
{
    if (m_descriptor != -1)
        ::close(m_descriptor);
    m_descriptor = -1;
}

}  // namespace platform
}  // namespace zorvel
