#include "platform/posix/semaphore_file.h"

#include "platform/posix/semaphore_place.h"

#include <cstring>

#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

const char mark[] = "zorvel semaphore";
const std::size_t markSize = sizeof mark - 1;
static_assert(markSize == sizeof SharedSemaphore::mark, "the mark fills its field");

/// Every turn but the last has met somebody who was just making or removing
/// the file.
const int attempts = 1000;

/// The locks are on one byte each. Who makes or removes the file, or decides
/// whether to, is alone behind the gate; life is shared by all who have the
/// semaphore open.
const off_t gate = 0;
const off_t life = 1;

/// A lock of this open file: F_RDLCK beside others, F_WRLCK alone, F_UNLCK none.
/// Waits only where `command` is F_OFD_SETLKW.
bool lock(int descriptor, off_t what, int command, short type)
{
    struct flock request = {};
    request.l_type = type;
    request.l_whence = SEEK_SET;
    request.l_start = what;
    request.l_len = 1;
    int result = 0;
    do
        result = ::fcntl(descriptor, command, &request);
    while (result == -1 && errno == EINTR);
    return result == 0;
}

bool enterAlone(int descriptor)
{
    return lock(descriptor, gate, F_OFD_SETLKW, F_WRLCK);
}

bool nobodyLives(int descriptor)
{
    return lock(descriptor, life, F_OFD_SETLK, F_WRLCK);
}

int openForUse(const char* path, int creation)
{
    int descriptor = -1;
    do
        // Neither a link that somebody put there is followed, nor does a device or a pipe make us wait.
        descriptor = ::open(path, O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | creation, 0666);
    while (descriptor == -1 && errno == EINTR);
    return descriptor;
}

/// Gives the file its size with memory behind it: a file of a full file system
/// that has the size only would end the process that touches it, and so would
/// growing it beyond the limit of the process.
bool reserve(int descriptor)
{
    rlimit limit;
    int code = ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur < sizeof(SharedSemaphore) ? EFBIG : EINTR;
    while (code == EINTR)
        code = ::posix_fallocate(descriptor, 0, sizeof(SharedSemaphore));
    errno = code;
    return code == 0;
}

/// Whether bytes are the mark, or what was written of it when its writer was
/// killed.
bool isMarkOrPart(const char* bytes)
{
    for (std::size_t i = 0; i < markSize; ++i) {
        if (bytes[i] != '\0' && bytes[i] != mark[i])
            return false;
    }
    return true;
}

}  // namespace

std::shared_ptr<SemaphoreFile> SemaphoreFile::open(const std::string& path, std::uint32_t count, std::uint32_t maximum)
{
    std::shared_ptr<SemaphoreFile> file(new SemaphoreFile(path));
    for (int turn = 0; turn < attempts; ++turn) {
        const Outcome outcome = file->tryOpen(count, maximum);
        if (outcome == Outcome::opened)
            return file;
        const int code = errno;
        file->close();
        errno = code;
        if (outcome == Outcome::failed)
            return nullptr;
    }
    errno = EAGAIN;
    return nullptr;
}

SemaphoreFile::Outcome SemaphoreFile::tryOpen(std::uint32_t count, std::uint32_t maximum)
{
    const Outcome outcome = openFile();
    if (outcome != Outcome::opened)
        return outcome;
    // Asked before the gate, at which somebody else's file may keep us waiting.
    if (!holdsOurs()) {
        errno = EEXIST;
        return Outcome::failed;
    }
    if (!enterAlone(m_descriptor))
        return Outcome::failed;
    if (!isStillNamed())
        return Outcome::again;
    const bool isOpen = nobodyLives(m_descriptor) ? makeFresh(count, maximum) : join();
    return isOpen && lock(m_descriptor, gate, F_OFD_SETLK, F_UNLCK) ? Outcome::opened : Outcome::failed;
}

/// Opens the file that is there before it makes one: a file of somebody else in
/// a directory like /dev/shm may not be opened by a call that could make it.
SemaphoreFile::Outcome SemaphoreFile::openFile()
{
    m_descriptor = openForUse(m_path.c_str(), 0);
    if (m_descriptor == -1 && errno == ENOENT) {
        m_descriptor = openForUse(m_path.c_str(), O_CREAT | O_EXCL);
        if (m_descriptor == -1 && errno == EEXIST)
            return Outcome::again;
    }
    return m_descriptor == -1 ? Outcome::failed : Outcome::opened;
}

/// Nobody else has the semaphore open: whatever the file says is of the dead.
bool SemaphoreFile::makeFresh(std::uint32_t count, std::uint32_t maximum)
{
    if (!reserve(m_descriptor) || !map()) {
        const int code = errno;
        ::unlink(m_path.c_str());
        errno = code;
        return false;
    }
    std::memcpy(m_shared->mark, mark, markSize);
    m_shared->count = count;
    m_shared->maximum = maximum;
    m_shared->sleepers = 0;
    return lock(m_descriptor, life, F_OFD_SETLK, F_RDLCK);
}

/// Others have it open, so it is made.
bool SemaphoreFile::join()
{
    return lock(m_descriptor, life, F_OFD_SETLK, F_RDLCK) && map();
}

/// Whether the path still leads to the open file: between opening it and the
/// gate it may have been removed.
bool SemaphoreFile::isStillNamed() const
{
    struct stat named;
    struct stat open;
    return ::fstat(m_descriptor, &open) == 0 && ::lstat(m_path.c_str(), &named) == 0 && named.st_dev == open.st_dev &&
           named.st_ino == open.st_ino;
}

/// Whether the file may be written to: a semaphore from before, or what is left
/// of the attempt to make one. Anything else is somebody's data.
bool SemaphoreFile::holdsOurs() const
{
    struct stat status;
    if (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    if (status.st_size == 0)
        return true;
    char found[markSize];
    return status.st_size == sizeof(SharedSemaphore) &&
           ::pread(m_descriptor, found, markSize, 0) == static_cast<ssize_t>(markSize) && isMarkOrPart(found);
}

bool SemaphoreFile::map()
{
    void* const place = SemaphorePlace::take();
    if (!place)
        return false;
    void* const memory =
        ::mmap(place, sizeof(SharedSemaphore), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, m_descriptor, 0);
    if (memory == MAP_FAILED) {
        const int code = errno;
        SemaphorePlace::giveUp(place);
        errno = code;
        return false;
    }
    m_shared = static_cast<SharedSemaphore*>(memory);
    return true;
}

/// The gate is opened by itself: closing would leave it shut where a child made
/// by fork() in another thread has the same open file.
void SemaphoreFile::close()
{
    if (m_shared)
        SemaphorePlace::giveUp(m_shared);
    if (m_descriptor != -1) {
        lock(m_descriptor, gate, F_OFD_SETLK, F_UNLCK);
        ::close(m_descriptor);
    }
    m_shared = nullptr;
    m_descriptor = -1;
}

SemaphoreFile::~SemaphoreFile()
{
    if (m_shared)
        leave();
    close();
}

/// Whether others have the semaphore open is asked through a second open file,
/// after the own one is closed. A child made by fork() has the own one open too
/// and must count as somebody else; unlocking would unlock it for the child.
/// When there is no second one to be had, the file stays for the next to clear.
void SemaphoreFile::leave()
{
    const int second = openForUse(m_path.c_str(), 0);
    const bool isSame = second != -1 && isStillNamed();
    close();
    m_descriptor = second;
    if (isSame && enterAlone(m_descriptor) && isStillNamed() && nobodyLives(m_descriptor))
        ::unlink(m_path.c_str());
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
