#include <zorvel/dirlock.h>

#include "platform/clock.h"

// One level is one lock file; each of these is one call of the file system.

/// The separator is '/' on every system, whatever the directory ends with, and
/// the directory stays as given: its spelling is the caller's.
std::string zvDirectoryExclusiveLock::getLockFileName(int level) const
{
    return directory + "/.deploy_lock." + std::to_string(level);
}

bool zvDirectoryExclusiveLock::lockFileExists(int level) const
{
    return fs->fileExists(getLockFileName(level).c_str());
}

bool zvDirectoryExclusiveLock::createLockFileExclusive(int level) const
{
    return fs->createFileExclusive(getLockFileName(level).c_str());
}

bool zvDirectoryExclusiveLock::touchLockFile(int level, const boost::posix_time::ptime& deadline) const
{
    return fs->refreshLockFileUntil(getLockFileName(level), deadline);
}

bool zvDirectoryExclusiveLock::removeLockFile(int level) const
{
    return removeLockFileWithTenacity(level, zorvel::platform::localTime());
}

bool zvDirectoryExclusiveLock::removeLockFileWithTenacity(int level) const
{
    return removeLockFileWithTenacity(level, zorvel::platform::localTime() + boost::posix_time::seconds(1));
}

bool zvDirectoryExclusiveLock::removeLockFileWithTenacity(int level, const boost::posix_time::ptime& deadline) const
{
    return fs->removeFileUntil(getLockFileName(level), deadline);
}
