#include "dirlock/detail/read_write_hold.h"

#include <zorvel/errors.h>

#include "dirlock/detail/claimed_lock_file.h"
#include "dirlock/detail/guard_turn.h"
#include "dirlock/detail/read_lock_file.h"
#include "dirlock/detail/timed_turn.h"
#include "fsutil/match.h"
#include "lockfile/lock_name.h"
#include "platform/clock.h"
#include "timer/deadline.h"

#include <boost/thread/locks.hpp>

#include <string>

namespace zorvel {
namespace dirlock {

namespace {

using boost::posix_time::ptime;
using boost::posix_time::time_duration;

const long pollMsec = zvDirectoryReadWriteLock::ACQUIRE_POLL_INTERVAL_MSEC;

/// The guard's lines in the verbose log carry no label of their own.
const char noLabel[] = "";

zvPathString writerIn(const zvPathString& directory)
{
    return zvPathString(directory, ".deploy_write_lock");
}

zvPathString readersIn(const zvPathString& directory)
{
    return zvPathString(directory, (std::string(readLockPrefix) + "*").c_str());
}

}  // namespace

ReadWriteHold::ReadWriteHold(const zvPathString& dir, const boost::shared_ptr<zvAbstractFS>& system)
    : guard(dir, noLabel, system),
      count(0),
      directory(dir),
      isStale(dir, system),
      fs(system),
      writerName(writerIn(dir)),
      readerPattern(readersIn(dir))
{
}

ReadWriteHold::ReadWriteHold(const zvPathString& dir, const boost::shared_ptr<zvLockFile>& file,
                             const boost::shared_ptr<zvAbstractFS>& system)
    : guard(dir, noLabel, system),
      count(1),
      directory(dir),
      lockFile(file),
      isStale(dir, system),
      fs(system),
      writerName(writerIn(dir)),
      readerPattern(readersIn(dir))
{
}

ReadWriteHold::~ReadWriteHold() = default;

/// A hold does not count: a second acquire is false, on purpose and unlike
/// that of the exclusive lock.
bool ReadWriteHold::acquire(const time_duration& timeout, bool skipRefresh)
{
    // One pause shorter than asked: the last look then ends in time.
    const ptime deadline = deadlineAfter(platform::localTime(), timeout) - boost::posix_time::milliseconds(pollMsec);
    requireSearchable();
    const TimedTurn turn(mutex, timeout);
    if (!turn || count != 0)
        return false;
    GuardTurn guardTurn(guard);
    return waitToEnter(deadline, guardTurn) && hold(skipRefresh);
}

/// False when somebody was there until the deadline; true with the guard, if
/// it came.
bool ReadWriteHold::waitToEnter(const ptime& deadline, GuardTurn& guardTurn)
{
    for (;;) {
        guardTurn.begin(deadline);
        if (mayEnter(deadline))
            return true;
        if (hasPassed(deadline, platform::localTime()))
            return false;
        // The pause is made under the guard, so that no two who wait look at
        // the directory at the same time.
        platform::sleepFor(pollMsec);
        guardTurn.end();
    }
}

bool ReadWriteHold::hold(bool skipRefresh)
{
    const boost::shared_ptr<zvLockFile> file = mark(refreshInterval(skipRefresh));
    if (!file || !*file)
        return false;
    lockFile = file;
    ++count;
    return true;
}

bool ReadWriteHold::release(const time_duration& timeout)
{
    const TimedTurn turn(mutex, timeout);
    if (!turn || count == 0)
        return false;
    if (--count == 0)
        lockFile.reset();
    return true;
}

bool ReadWriteHold::isAcquired()
{
    const boost::lock_guard<boost::timed_mutex> turn(mutex);
    return count > 0;
}

ReadWriteHold::Verdict ReadWriteHold::judge(const char* name, int staleSeconds, const ptime& deadline)
{
    try {
        return isStale(name, staleSeconds, deadline) ? Verdict::stale : Verdict::fresh;
    } catch (const zvFileNotFoundError&) {
        return Verdict::vanished;
    }
}

/// In a directory whose path cannot be searched by a pattern nobody would ever
/// be seen, and everybody be let in.
void ReadWriteHold::requireSearchable() const
{
    if (directory.empty() || holdsNul(directory))
        throw zvNoSuchDirectory(directory);
    if (!canBeSearched(readLockPattern().c_str()))
        throw zvFileAccessError("Lock files cannot be searched for in " + directory);
}

}  // namespace dirlock
}  // namespace zorvel
