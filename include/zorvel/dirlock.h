#pragma once

#include <zorvel/export.h>
#include <zorvel/lockfile.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include <atomic>
#include <string>

/// Gives one process at a time, on any machine that shares the directory, a
/// directory for itself.
///
/// The lock is a row of files "/.deploy_lock." + level in the directory: the
/// file of level 0 is the lock, the others are the queue for it. A holder
/// refreshes its file every second; a file that nobody refreshed for 30
/// seconds, by the file server's clock, is taken over by the first who waits.
///
/// Any thread may call any member: acquire and release of one object take
/// turns. The count of acquisitions belongs to the object, not to a thread.
/// The directory must exist. Its spelling is kept as given: all who lock it
/// must reach the same directory by it.
///
/// Timeouts are durations from now; zero, a negative one, negative infinity
/// and not-a-date-time mean "try", positive infinity means without limit.
class ZORVEL_API zvDirectoryExclusiveLock
{
public:
    static const int ACQUIRE_POLL_INTERVAL_MSEC = 5;
    static const int REFRESH_INTERVAL_MSEC = 1000;
    static const int STALE_TIMEOUT_SEC = 30;

    /// What noRefresh() returns: a lockable that acquires its lock without
    /// refresh. It must not outlive the lock.
    class ZORVEL_API no_refresh_lock_proxy
    {
    public:
        explicit no_refresh_lock_proxy(zvDirectoryExclusiveLock& lock);

        void lock();
        void unlock();
        bool try_lock();

    private:
        zvDirectoryExclusiveLock* m_lock;
    };

    /// Touches no file. The label opens the lines of the verbose log. An empty
    /// fs throws zvFileAccessError.
    zvDirectoryExclusiveLock(const std::string& directory, const std::string& label,
                             const boost::shared_ptr<zvAbstractFS>& fs);

    /// Frees the directory if it is held.
    ~zvDirectoryExclusiveLock();

    zvDirectoryExclusiveLock(const zvDirectoryExclusiveLock&) = delete;
    zvDirectoryExclusiveLock& operator=(const zvDirectoryExclusiveLock&) = delete;

    /// Takes the directory, waiting at most `timeout`. On an object that holds
    /// it already, only counts. With skipRefresh the file is not refreshed:
    /// hold it for less than 30 seconds.
    ///
    /// False: not acquired in time (or 1024 others are queued). A failure of
    /// the file system while waiting in the queue throws zvFileBasedLockError
    /// itself, with the text of what happened; elsewhere the member of the
    /// family: zvNoSuchDirectory (also for a directory with a NUL in it),
    /// zvPermissionDenied, zvFileAccessError.
    /// boost::thread_interrupted leaves when the waiting thread is
    /// interrupted. No exception leaves a file of this lock behind, unless its
    /// removal fails as well or memory is exhausted; it then goes stale.
    bool acquire(const boost::posix_time::time_duration& timeout, bool skipRefresh);

    /// acquire without limit.
    bool acquire(bool skipRefresh);

    /// acquire with a timeout of zero. A free directory takes 5 ms.
    bool tryAcquire(bool skipRefresh);

    /// Undoes one acquire; the last one frees the directory. False when it is
    /// not held, or another thread was busy with this object for `timeout`.
    bool release(const boost::posix_time::time_duration& timeout);
    bool release();

    /// Whether the object holds the directory. Does not wait.
    bool isAcquired() const;

    /// The standard lockable: acquire and release without limit, tryAcquire;
    /// with refresh. lock() and unlock() drop the result: lock() returns
    /// without the directory when 1024 others are queued or the lock file has
    /// vanished; isAcquired() tells.
    void lock();
    void unlock();
    bool try_lock();

    no_refresh_lock_proxy noRefresh();

private:
    class Descent;

    bool hold(bool skipRefresh);
    boost::shared_ptr<zvLockFile> makeLockFile(bool skipRefresh);
    void giveUp(int level, const boost::posix_time::ptime& deadline) const;
    void warnNotRemoved(int level, int removalTag) const;

    std::string getLockFileName(int level) const;
    bool lockFileExists(int level) const;
    bool createLockFileExclusive(int level) const;
    bool touchLockFile(int level, const boost::posix_time::ptime& deadline) const;
    bool removeLockFile(int level) const;
    bool removeLockFileWithTenacity(int level) const;
    bool removeLockFileWithTenacity(int level, const boost::posix_time::ptime& deadline) const;
    int queue(const boost::posix_time::ptime& deadline);

    boost::timed_mutex mutex;
    std::string directory;
    std::string label;
    std::atomic<unsigned int> count;
    boost::shared_ptr<zvLockFile> lockFile;
    zvLockFileIsStale isStale;
    boost::shared_ptr<zvAbstractFS> fs;
};
