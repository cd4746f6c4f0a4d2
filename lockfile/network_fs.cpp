#include "lockfile/detail/network_fs.h"
#include "lockfile/detail/periodic_refresh.h"

#include <zorvel/errors.h>
#include <zorvel/paths.h>

#include "fsutil/match.h"
#include "lockfile/lock_logs.h"
#include "lockfile/lock_name.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "timer/deadline.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace zorvel {
namespace lockfile {

namespace {

using boost::posix_time::ptime;

/// A share denies access for a moment while another machine opens or removes
/// the same file, so that answer is doubted for half a second.
const int deniedRetries = 50;
const long deniedPauseMsec = 10;
const long busyPauseMsec = 1;

int openPatiently(platform::WritableFile& file, const char* name, platform::OpenMode mode)
{
    int code = file.open(name, mode);
    for (int retries = deniedRetries; code == EACCES && retries >= 1; --retries) {
        platform::sleepFor(deniedPauseMsec);
        code = file.open(name, mode);
    }
    return code;
}

/// Whether the directory that a file lies in exists; a bare name lies in the
/// current one.
bool parentIsDirectory(const char* name)
{
    const zvPathString parent = zvPathString(name).directoryPart();
    return zvIsDirectory(parent.empty() ? "." : parent.c_str());
}

/// What a failed open or write is reported as, whatever its code, before
/// anything else is made of it.
void throwIfUnusable(const char* name, int code)
{
    if (!parentIsDirectory(name))
        throw zvNoSuchDirectory(name);
    if (code == EACCES)
        throw zvPermissionDenied(name);
}

/// The content of the next refresh. A plain increment, shared by all threads
/// and deliberately not an atomic one: the value only has to differ from the
/// one written before, and two equal ones do no harm.
std::uint32_t nextRefreshContent()
{
    static std::atomic<std::uint32_t> counter(0);
    const std::uint32_t content = counter.load(std::memory_order_relaxed) + 1;
    counter.store(content, std::memory_order_relaxed);
    return content;
}

/// One attempt to write to a file and so to have its server stamp it anew. A
/// client of SMB keeps a file open for a second after it was closed, and while
/// it is opened again before that, other clients go on seeing its first time;
/// a flush shows them the new one. The touches of an acquire need none: the
/// second in which the file is closed has not begun.
int touch(const char* name)
{
    platform::WritableFile file;
    const int code = openPatiently(file, name, platform::OpenMode::createOrOpen);
    if (code != 0)
        return code;
    const std::uint32_t content = nextRefreshContent();
    const int written = file.write(&content, sizeof content);
    return written == 0 && PeriodicRefresh::underWay() ? file.flush() : written;
}

/// A file that is just being created can carry any time at all for a moment:
/// an NFS server keeps there, until the creator sends the next request, what
/// tells the creators of one name apart. Such a time must not make the file
/// stale, so one that is out of the question is asked for again for a second.
/// (The local clock only says when to doubt. Where it is wrong by more than
/// that, every question takes so long, and the answer is the same.)
const std::int64_t secondsWithoutDoubt = std::int64_t{24} * 60 * 60;
const int doubtRetries = 100;
const long doubtPauseMsec = 10;

bool isDoubtful(std::int64_t time)
{
    const std::int64_t now = platform::universalSeconds();
    return time < now - secondsWithoutDoubt || time > now + secondsWithoutDoubt;
}

/// What the clients of shares say of a file that is just being removed (EBUSY,
/// on SMB) or replaced (EINVAL, to a Windows program on another system's
/// client).
bool isPassing(int code)
{
    return code == EBUSY || code == EINVAL;
}

/// Asks until the answer can be believed or the file is gone; in between,
/// other answers (a denied one for a file under removal) mean nothing yet.
int askAgain(const char* name, std::int64_t& time)
{
    int code = 0;
    for (int retries = doubtRetries; retries >= 1; --retries) {
        platform::sleepFor(doubtPauseMsec);
        code = platform::modificationTimeAtServer(name, time);
        if (code == ENOENT || (code == 0 && !isDoubtful(time)))
            break;
    }
    return code;
}

int believableTime(const char* name, std::int64_t& time)
{
    const int code = platform::modificationTime(name, time);
    return isPassing(code) || (code == 0 && isDoubtful(time)) ? askAgain(name, time) : code;
}

const char* textOf(const char* name)
{
    return name ? name : "";
}

}  // namespace

bool zvNetworkFS::isDirectory(const char* path)
{
    return zvIsDirectory(zvPathString(path).c_str());
}

bool zvNetworkFS::mkdirP(const char* path)
{
    return zvMkdirP(path);
}

int zvNetworkFS::removeEntry(const char* name)
{
    return platform::removeFile(name) == 0 ? 0 : -1;
}

bool zvNetworkFS::removeRF(const char* path)
{
    return zvRemoveRF(path);
}

bool zvNetworkFS::fileExists(const char* name)
{
    if (zvFileExists(name))
        return true;
    if (!parentIsDirectory(name))
        throw zvNoSuchDirectory(textOf(name));
    return false;
}

bool zvNetworkFS::createFileExclusive(const char* name)
{
    platform::WritableFile file;
    const int code = openPatiently(file, name, platform::OpenMode::createNew);
    if (code == 0)
        return true;
    // The directory is judged before "exists already": a missing directory is
    // always reported as such, whatever the open said.
    throwIfUnusable(textOf(name), code);
    if (code == EEXIST)
        return false;
    throw zvFileAccessError("Exclusive create failed on " + std::string(textOf(name)) +
                            " (reason: " + std::strerror(code) + ")");
}

bool zvNetworkFS::removeFileUntil(const std::string& name, const ptime& deadline)
{
    if (holdsNul(name))
        return false;
    for (;;) {
        const int code = platform::removeFile(name.c_str());
        if (code == 0)
            return true;
        if (code == EACCES)
            throw zvPermissionDenied(name);
        if (code != EBUSY || hasCome(deadline, platform::localTime()))
            return false;
        platform::sleepFor(busyPauseMsec);
    }
}

bool zvNetworkFS::refreshLockFileUntil(const std::string& name, const ptime& deadline)
{
    verboseLog << "Touching lock file..." << std::endl;
    if (holdsNul(name))
        throw zvNoSuchDirectory(name);
    for (;;) {
        const int code = touch(name.c_str());
        if (code == 0) {
            verboseLog << "Lock successfully refreshed" << std::endl;
            return true;
        }
        throwIfUnusable(name.c_str(), code);
        platform::sleepFor(busyPauseMsec);
        if (hasCome(deadline, platform::localTime())) {
            warningLog << "FS_LOCK: failed to refresh lock file: " << name << std::endl;
            return false;
        }
    }
}

zvTime64 zvNetworkFS::getModificationTime(const char* name)
{
    std::int64_t time = 0;
    const int code = believableTime(name, time);
    if (code == ENOENT)
        throw zvFileNotFoundError(textOf(name));
    if (code != 0)
        throw zvFileAccessError(textOf(name));
    return time;
}

bool zvNetworkFS::anyMatch(const char* pattern)
{
    bool found = false;
    const int code = findMatch(pattern, found);
    // A lock asks this to know that nobody is there, so a directory that
    // cannot be looked at must not pass for an empty one.
    if (code != 0)
        throw zvFileAccessError("Search failed for " + std::string(textOf(pattern)) +
                                " (reason: " + std::strerror(code) + ")");
    return found;
}

int zvNetworkFS::findMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& onFile,
                                          const zvStringProcedure& onDir, int depth, bool stopAtFirst)
{
    return zvFindMatchingFilesAndDirs(pattern, onFile, onDir, depth, stopAtFirst);
}

unsigned short zvNetworkFS::disableWritePermission(const char* path)
{
    return zvDisableWritePermission(path);
}

unsigned short zvNetworkFS::enableWritePermission(const char* path)
{
    return zvEnableWritePermission(path);
}

}  // namespace lockfile
}  // namespace zorvel
