#include <zorvel/dirlock.h>

#include "lockfile/lock_logs.h"
#include "platform/clock.h"

namespace {

using boost::posix_time::ptime;
using zorvel::verboseLog;

const int levelCount = 1024;
const int noLevel = -1;

/// Whether a deadline leaves no time for even one look at the level below.
bool isTooCloseToQueue(const ptime& deadline)
{
    const boost::posix_time::milliseconds poll(zvDirectoryExclusiveLock::ACQUIRE_POLL_INTERVAL_MSEC);
    return deadline.is_not_a_date_time() || deadline < zorvel::platform::localTime() + poll;
}

}  // namespace

/// Claims the lowest free level and returns it, or -1. Level 0 is tried once
/// whatever the deadline, so that a "try" can have a free lock. The pause lies
/// between seeing a level free and creating its file, at every level: the race
/// it leaves open is decided by the exclusive creation.
int zvDirectoryExclusiveLock::queue(const ptime& deadline)
{
    verboseLog << "Queuing for lock acquire in directory " << directory << std::endl;
    for (int level = 0; level < levelCount; ++level) {
        if (lockFileExists(level)) {
            verboseLog << "Lock file exists at level " << level << ".  Going to next level..." << std::endl;
            continue;
        }
        if (level >= 1 && isTooCloseToQueue(deadline))
            return noLevel;
        verboseLog << "No lock found at level " << level << ".  Sleeping for one polling cycle..." << std::endl;
        zorvel::platform::sleepFor(ACQUIRE_POLL_INTERVAL_MSEC);
        verboseLog << "Attempting to create queue file..." << std::endl;
        if (createLockFileExclusive(level)) {
            verboseLog << "queue file created at level " << level << std::endl;
            return level;
        }
    }
    return noLevel;
}
