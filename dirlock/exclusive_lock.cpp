#include <zorvel/dirlock.h>

#include <zorvel/errors.h>

#include "dirlock/detail/claimed_lock_file.h"
#include "dirlock/detail/exclusive_descent.h"
#include "dirlock/detail/timed_turn.h"
#include "lockfile/lock_logs.h"
#include "lockfile/lock_name.h"
#include "platform/clock.h"
#include "timer/deadline.h"

namespace {

using boost::posix_time::time_duration;
using zorvel::dirlock::makeClaimedLockFile;
using zorvel::dirlock::refreshInterval;
using zorvel::dirlock::TimedTurn;

/// Tells this place of a failed removal from those of the descent.
const int removalAtEnd = 380;

const time_duration withoutLimit(boost::posix_time::pos_infin);
const time_duration noTime(0, 0, 0);

}  // namespace

const int zvDirectoryExclusiveLock::ACQUIRE_POLL_INTERVAL_MSEC;
const int zvDirectoryExclusiveLock::REFRESH_INTERVAL_MSEC;
const int zvDirectoryExclusiveLock::STALE_TIMEOUT_SEC;

zvDirectoryExclusiveLock::zvDirectoryExclusiveLock(const std::string& dir, const std::string& opening,
                                                   const boost::shared_ptr<zvAbstractFS>& system)
    : directory(dir), label(opening), count(0), isStale(zvPathString(dir), system), fs(system)
{
}

zvDirectoryExclusiveLock::~zvDirectoryExclusiveLock() = default;

bool zvDirectoryExclusiveLock::acquire(const time_duration& timeout, bool skipRefresh)
{
    const boost::posix_time::ptime deadline = zorvel::deadlineAfter(zorvel::platform::localTime(), timeout);
    if (zorvel::holdsNul(directory))
        throw zvNoSuchDirectory(directory);
    const TimedTurn turn(mutex, timeout);
    if (!turn)
        return false;
    if (count > 0) {
        ++count;
        return true;
    }
    int level = queue(deadline);
    if (level >= 1)
        level = Descent(*this, deadline, level).run();
    if (level == 0 && hold(skipRefresh))
        return true;
    giveUp(level, deadline);
    return false;
}

/// Holds the file of level 0, which this process owns. False when it is gone
/// in spite of that.
bool zvDirectoryExclusiveLock::hold(bool skipRefresh)
{
    const boost::shared_ptr<zvLockFile> file =
        makeClaimedLockFile(getLockFileName(0), refreshInterval(skipRefresh), fs);
    if (!*file)
        return false;
    lockFile = file;
    count = 1;
    return true;
}

/// The end of an acquire that failed. A level 0 that was not valid has been
/// removed by its lock file already and is removed once more here, as it has
/// always been. Without a level of its own it removes the file of level -1,
/// which does not exist, and so leaves its line in the warning log: the sign
/// there of a queue that was full or a deadline that was too close.
void zvDirectoryExclusiveLock::giveUp(int level, const boost::posix_time::ptime& deadline) const
{
    if (!removeLockFileWithTenacity(level, deadline))
        warnNotRemoved(level, removalAtEnd);
}

void zvDirectoryExclusiveLock::warnNotRemoved(int level, int removalTag) const
{
    zorvel::warningLog << "FS_LOCK: failed to remove " << getLockFileName(level) << "(" << removalTag << ")"
                       << std::endl;
}

bool zvDirectoryExclusiveLock::acquire(bool skipRefresh)
{
    return acquire(withoutLimit, skipRefresh);
}

bool zvDirectoryExclusiveLock::tryAcquire(bool skipRefresh)
{
    return acquire(noTime, skipRefresh);
}

bool zvDirectoryExclusiveLock::release(const time_duration& timeout)
{
    const TimedTurn turn(mutex, timeout);
    if (!turn || count == 0)
        return false;
    if (--count == 0)
        lockFile.reset();
    return true;
}

bool zvDirectoryExclusiveLock::release()
{
    return release(withoutLimit);
}

bool zvDirectoryExclusiveLock::isAcquired() const
{
    return count != 0;
}

void zvDirectoryExclusiveLock::lock()
{
    acquire(withoutLimit, false);
}

void zvDirectoryExclusiveLock::unlock()
{
    release(withoutLimit);
}

bool zvDirectoryExclusiveLock::try_lock()
{
    return acquire(noTime, false);
}

zvDirectoryExclusiveLock::no_refresh_lock_proxy zvDirectoryExclusiveLock::noRefresh()
{
    return no_refresh_lock_proxy(*this);
}
