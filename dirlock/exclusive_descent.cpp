#include "dirlock/detail/exclusive_descent.h"

#include <zorvel/errors.h>

#include "lockfile/lock_logs.h"
#include "platform/clock.h"
#include "timer/deadline.h"

#include <boost/thread/thread.hpp>

namespace {

using boost::posix_time::ptime;
using zorvel::staleLog;
using zorvel::verboseLog;
namespace platform = zorvel::platform;

// They tell the places of a failed removal apart in the warning log.
const int removalAfterCreation = 310;
const int removalOfStale = 334;
const int removalAfterTakeover = 343;

}  // namespace

zvDirectoryExclusiveLock::Descent::Descent(zvDirectoryExclusiveLock& lock, const ptime& deadline, int level)
    : m_lock(lock),
      m_deadline(deadline),
      m_level(level),
      m_lowerName(lock.getLockFileName(level - 1)),
      m_ownsLower(false)
{
}

int zvDirectoryExclusiveLock::Descent::run()
{
    try {
        m_lastTouch = platform::localTime();
        if (!zorvel::hasCome(m_deadline, m_lastTouch))
            pause();
        while (m_level >= 1 && step()) {
        }
    } catch (const zvFileBasedLockError& error) {
        abandonOrThrow();
        // Only the base is copied: callers get the base type with the text of
        // the exception caught, on purpose; they have always been told so.
        throw zvFileBasedLockError(error);
    } catch (...) {
        abandonQuietly();
        throw;
    }
    return m_level;
}

/// One pass at the level below; false when the deadline has come.
bool zvDirectoryExclusiveLock::Descent::step()
{
    keepFresh();
    verboseLog << m_lock.label << ": Trying to acquire level " << lower() << std::endl;
    if (m_lock.fs->createFileExclusive(m_lowerName.c_str())) {
        m_ownsLower = true;
        m_lastTouch = platform::localTime();
        verboseLog << m_lock.label << ": Success! removing level " << m_level << std::endl;
        stepDown(removalAfterCreation);
        return true;
    }
    verboseLog << m_lock.label << ": Could not acquire; trying to detect stale lock at level " << lower() << std::endl;
    const Verdict verdict = judgeLower();
    if (verdict == Verdict::stale && takeOverStale())
        return true;
    if (deadlineHasCome())
        return false;
    if (verdict == Verdict::fresh) {
        verboseLog << m_lock.label << ": Sleeping" << std::endl;
        pause();
    } else {
        // At once; but a waiting thread can be interrupted here too.
        boost::this_thread::interruption_point();
    }
    return true;
}

/// The own queue file must not look stale to others while this process waits;
/// also not because the clock was set back.
void zvDirectoryExclusiveLock::Descent::keepFresh()
{
    const ptime now = platform::localTime();
    if (now >= m_lastTouch && now - m_lastTouch < boost::posix_time::milliseconds(REFRESH_INTERVAL_MSEC))
        return;
    m_lock.touchLockFile(m_level, m_deadline);
    m_lastTouch = now;
}

zvDirectoryExclusiveLock::Descent::Verdict zvDirectoryExclusiveLock::Descent::judgeLower()
{
    try {
        return m_lock.isStale(m_lowerName.c_str(), STALE_TIMEOUT_SEC, m_deadline) ? Verdict::stale : Verdict::fresh;
    } catch (const zvFileNotFoundError&) {
        return Verdict::vanished;
    }
}

/// A stale file is taken over by touching it. Two processes that judge it at
/// the same moment may both go on; that is the price of needing nothing but
/// files. False when the file could neither be touched nor removed: the next
/// pass tries again, as long as there is time.
bool zvDirectoryExclusiveLock::Descent::takeOverStale()
{
    staleLog << "FS_LOCK: stale lock detected: " << m_lowerName << std::endl;
    if (m_lock.touchLockFile(lower(), m_deadline)) {
        m_ownsLower = true;
        m_lastTouch = platform::localTime();
        stepDown(removalAfterTakeover);
        return true;
    }
    staleLog << "FS_LOCK: removing stale lock " << m_lowerName << std::endl;
    if (m_lock.removeLockFileWithTenacity(lower(), m_deadline)) {
        staleLog << "FS_LOCK: removed stale lock " << m_lowerName << std::endl;
        return true;
    }
    // The line names the own file and not the stale one, on purpose: it tells
    // who failed, and readers of these logs look for that.
    m_lock.warnNotRemoved(m_level, removalOfStale);
    return false;
}

/// Gives the own level up for the one below, which is owned already.
void zvDirectoryExclusiveLock::Descent::stepDown(int removalTag)
{
    if (!m_lock.removeLockFileWithTenacity(m_level, m_deadline))
        m_lock.warnNotRemoved(m_level, removalTag);
    m_level = lower();
    m_ownsLower = false;
    // Last, for it may throw.
    m_lowerName = m_lock.getLockFileName(lower());
}

bool zvDirectoryExclusiveLock::Descent::deadlineHasCome() const
{
    if (m_deadline.is_pos_infinity())
        return false;
    return zorvel::hasCome(m_deadline, platform::localTime());
}

void zvDirectoryExclusiveLock::Descent::pause() const
{
    platform::sleepFor(ACQUIRE_POLL_INTERVAL_MSEC);
}

/// Leaves the queue because of an error of the file system. Whatever else
/// befalls the removals (an interruption) leaves in its place, but no file
/// stays because of it.
void zvDirectoryExclusiveLock::Descent::abandonOrThrow() const
{
    try {
        abandon();
    } catch (const zvFileBasedLockError&) {
        throw;
    } catch (...) {
        abandonQuietly();
        throw;
    }
}

/// A denied removal of the own file is not worth more than the error that led
/// here.
void zvDirectoryExclusiveLock::Descent::abandon() const
{
    if (m_ownsLower) {
        try {
            m_lock.removeLockFileWithTenacity(lower(), m_deadline);
        } catch (const zvFileBasedLockError&) {
        }
    }
    try {
        m_lock.removeLockFileWithTenacity(m_level, m_deadline);
    } catch (const zvPermissionDenied&) {
    }
}

/// Leaves the queue because of an exception that goes on as it is, which
/// nothing here may replace: an interruption, for one.
void zvDirectoryExclusiveLock::Descent::abandonQuietly() const
{
    const boost::this_thread::disable_interruption uninterrupted;
    for (int level = m_ownsLower ? lower() : m_level; level <= m_level; ++level) {
        try {
            m_lock.removeLockFileWithTenacity(level);
        } catch (...) {
        }
    }
}
