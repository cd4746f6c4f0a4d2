#pragma once

/// @file
/// Locks on a directory, between processes and between machines. What is
/// here: @ref dirlock.

#include <zorvel/export.h>
#include <zorvel/lockfile.h>
#include <zorvel/paths.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include <atomic>
#include <string>

/// @defgroup dirlock Directory locks
/// @brief A directory for one process at a time, or for many readers or one writer, on all machines that share it.
///
/// | you want | take |
/// |---|---|
/// | a directory for one process at a time, in turn | zvDirectoryExclusiveLock |
/// | many that read together, one that writes alone | zvDirectoryReadWriteLock: its ReadLock and WriteLock |
/// | to read what you have just written, others too | zvDirectoryReadWriteLock::WriteLock::downgrade() |
///
/// Use one of the two classes for one directory, not both. The locks are files in
/// the directory and nothing else: Windows and Linux processes exclude each
/// other. What is guaranteed, under which assumptions, and what goes wrong
/// without them is in [How the directory locks work](@ref locking); which shares
/// are good for it, in [File systems](@ref filesystems).
///
/// False is an ordinary outcome (not acquired in time, not held); failures of the
/// file system are thrown, see @ref errors. The locks are made of @ref lockfile. For the
/// processes of one machine alone there is the @ref semaphore, which needs no directory.
///
/// What a call does and returns is the same on Windows and on Linux; what differs lies
/// in the file system below (see zvAbstractFS).
///
/// Alone in a directory, for at most ten seconds' waiting:
///
/// @include lock_directory.cpp
///
/// Readers, and a writer who then reads:
///
/// @include shared_counter.cpp
///
/// @{

/// Gives one process at a time, on any machine that shares the directory, a
/// directory for itself.
///
/// The lock is a row of files in the directory, `.deploy_lock.0`,
/// `.deploy_lock.1` and so on: that of level 0 is the lock, the others are the
/// queue for it. A holder refreshes its file every second; a file that nobody
/// refreshed for 30 seconds, by the file server's clock, is taken over by the
/// first who waits.
///
/// Any thread may call any member: acquire and release of one object take
/// turns. The count of acquisitions belongs to the object, not to a thread.
/// The directory must exist. Its spelling is kept as given: all who lock it
/// must reach the same directory by it.
///
/// After a fork the child must not destroy or use the lock (only exec or
/// _exit). Release before the library is unloaded: a refresh runs its code.
///
/// Timeouts are durations from now; zero, a negative one, negative infinity
/// and not-a-date-time mean "try", positive infinity means without limit.
class ZORVEL_API zvDirectoryExclusiveLock
{
public:
    /// Milliseconds between two looks of one who waits.
    static const int ACQUIRE_POLL_INTERVAL_MSEC = 5;

    /// Milliseconds between two refreshes of a held lock's file.
    static const int REFRESH_INTERVAL_MSEC = 1000;

    /// Seconds without a refresh after which a holder counts as dead.
    static const int STALE_TIMEOUT_SEC = 30;

    /// What noRefresh() returns: a lockable that acquires its lock without
    /// refresh. It must not outlive the lock. As the lock itself, any thread may
    /// use it, and it throws what that throws.
    class ZORVEL_API no_refresh_lock_proxy
    {
    public:
        /// Refers to the lock; touches no file.
        explicit no_refresh_lock_proxy(zvDirectoryExclusiveLock& lock);

        /// As zvDirectoryExclusiveLock::lock(), without refresh: hold it for less
        /// than 30 seconds.
        void lock();

        /// As zvDirectoryExclusiveLock::unlock().
        void unlock();

        /// As zvDirectoryExclusiveLock::try_lock(), without refresh.
        bool try_lock();

    private:
        zvDirectoryExclusiveLock* m_lock;
    };

    /// Touches no file. Keeps copies of both texts and shares fs. The label
    /// opens the lines of the verbose log. An empty fs throws
    /// zvFileAccessError.
    zvDirectoryExclusiveLock(const std::string& directory, const std::string& label,
                             const boost::shared_ptr<zvAbstractFS>& fs);

    /// Frees the directory if it is held, however often it was acquired. Never
    /// throws; a file that cannot be removed goes stale.
    ~zvDirectoryExclusiveLock();

    /// Not copyable: two objects are two who wait for each other.
    /// @{
    zvDirectoryExclusiveLock(const zvDirectoryExclusiveLock&) = delete;
    zvDirectoryExclusiveLock& operator=(const zvDirectoryExclusiveLock&) = delete;
    /// @}

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
    /// removal fails as well, the file system reported its creation as failed,
    /// or memory is exhausted; it then goes stale.
    bool acquire(const boost::posix_time::time_duration& timeout, bool skipRefresh);

    /// As above, without limit.
    bool acquire(bool skipRefresh);

    /// acquire() with a timeout of zero. A free directory takes 5 ms.
    /// Where a file stands in the way that was left more than a day ago, each
    /// look at it takes a second (see zvAbstractFS::getModificationTime()).
    bool tryAcquire(bool skipRefresh);

    /// Undoes one acquire; the last one frees the directory. False when it is
    /// not held, or another thread was busy with this object for `timeout`
    /// (without one: without limit). Never throws for a failure of the file
    /// system.
    /// @{
    bool release(const boost::posix_time::time_duration& timeout);
    bool release();
    /// @}

    /// Whether the object holds the directory. Does not wait, and does not look
    /// at the disk: a hold that was lost to others still counts.
    bool isAcquired() const;

    /// The standard lockable: acquire() and release() without limit,
    /// tryAcquire(); with refresh. lock() and unlock() drop the result: lock()
    /// returns without the directory when 1024 others are queued or the lock file
    /// has vanished; isAcquired() tells.
    /// @{
    void lock();
    void unlock();
    bool try_lock();
    /// @}

    /// A lockable that acquires this lock without refresh. It refers to this
    /// object.
    no_refresh_lock_proxy noRefresh();

private:
    class Descent;

    bool hold(bool skipRefresh);
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

/// Lets many processes, on any machines that share a directory, read it
/// together while a writer has it alone.
///
/// A reader marks itself with a file ".deploy_read_lock." + number, the writer
/// with ".deploy_write_lock"; holders refresh their files every second, and a
/// file that nobody refreshed for 30 seconds, by the file server's clock, is
/// removed by the next who looks. Whoever looks and marks does so under a
/// guard: a zvDirectoryExclusiveLock on the same directory, held for that
/// moment only. Use one kind of lock for one directory: an exclusive lock keeps
/// readers and writers from coming in, but not out who is in already.
///
/// This object only remembers the directory and the file system, and hands out
/// locks. Copies are independent; const members may be called from any thread.
///
/// The directory must exist, be listable and writable. Its path is normalised,
/// which drops blanks at its ends. There is no upgrade: a reader that acquires
/// the write lock of the same directory waits for itself. fork and unloading:
/// as with zvDirectoryExclusiveLock.
///
/// Timeouts are durations from now; zero, a negative one, negative infinity
/// and not-a-date-time mean "try", positive infinity means without limit.
class ZORVEL_API zvDirectoryReadWriteLock
{
public:
    /// Milliseconds between two looks of one who waits.
    static const int ACQUIRE_POLL_INTERVAL_MSEC = 5;

    /// Milliseconds between two refreshes of a held lock's file.
    static const int REFRESH_INTERVAL_MSEC = 1000;

    /// Seconds without a refresh after which a holder counts as dead.
    static const int STALE_TIMEOUT_SEC = 30;

    /// The part of a reader: others may read at the same time, nobody writes. A
    /// handle: copies share one hold, whoever releases ends it for all of them, and
    /// the last copy to go ends it too. Any thread may call any member of one
    /// handle or of copies; only assigning to a handle while another thread uses
    /// the same handle is the caller's to prevent.
    class ZORVEL_API ReadLock
    {
    public:
        /// Not acquired; touches no file. Keeps a copy of the path and shares fs.
        /// An empty fs throws zvFileAccessError.
        ReadLock(const zvPathString_<zvMBCSSafeString>& directory, const boost::shared_ptr<zvAbstractFS>& fs);

        /// Takes over the file of a reader, which counts as acquired, and shares
        /// it and fs. The directory is the one that the file's name lies in. An
        /// empty pointer throws zvFileAccessError.
        ReadLock(const boost::shared_ptr<zvLockFile>& lockFile, const boost::shared_ptr<zvAbstractFS>& fs);

        /// Another handle of the same hold.
        /// @{
        ReadLock(const ReadLock& other);
        ReadLock& operator=(const ReadLock& other);
        /// @}

        /// Of the last handle: ends the hold. Never throws.
        ~ReadLock();

        /// Waits at most `timeout` until nobody writes, then reads along. With
        /// skipRefresh the file is not refreshed: hold it for less than 30
        /// seconds.
        ///
        /// False: a writer was there until the end, or this lock is acquired
        /// already (it does not count, unlike the exclusive lock), or another
        /// thread was busy with it for `timeout`. Failures of the file system
        /// leave as the family of zvFileBasedLockError, as from
        /// zvDirectoryExclusiveLock::acquire(); zvNoSuchDirectory also for an
        /// empty directory and one with a NUL in it, zvFileAccessError also for
        /// one that no pattern can search ('*' in its path, or more than some
        /// 1000 bytes). boost::thread_interrupted leaves when the waiting thread
        /// is interrupted (not while it waits for another thread's turn at this
        /// lock). No exception leaves a file behind, unless its removal fails as
        /// well, the file system reported its creation as failed, or memory is
        /// exhausted; it then goes stale.
        ///
        /// At its deadline a reader that could not have the guard in time still
        /// looks for a writer and goes on without it. If a writer looks for
        /// readers at that same moment, both go on. Who must exclude that
        /// acquires without limit (and interrupts the thread to give up), or
        /// uses a gate: see
        /// [How the directory locks work](@ref locking).
        bool acquire(const boost::posix_time::time_duration& timeout, bool skipRefresh);

        /// As above, without limit.
        bool acquire(bool skipRefresh);

        /// acquire() with a timeout of zero. A free directory takes 5 ms.
        /// Where a file stands in the way that was left more than a day ago,
        /// each look at it takes a second (see
        /// zvAbstractFS::getModificationTime()).
        bool tryAcquire(bool skipRefresh);

        /// Ends the hold and removes its file. False when it is not held, or
        /// another thread was busy with it for `timeout` (without one: without
        /// limit). Never throws for a failure of the file system.
        /// @{
        bool release(const boost::posix_time::time_duration& timeout);
        bool release();
        /// @}

        /// Whether it is held. Waits for a thread that is in acquire. Does not
        /// look at the disk: a hold that was lost to others still counts.
        bool isAcquired() const;

    private:
        class Impl;

        boost::shared_ptr<Impl> impl;
    };

    /// The part of a writer: nobody else reads or writes. A handle, as ReadLock
    /// is: the same holds for copies and threads.
    ///
    /// A waiting writer leaves no mark: readers that come meanwhile are let in,
    /// so that a steady stream of readers holds a writer off until its
    /// deadline.
    class ZORVEL_API WriteLock
    {
    public:
        /// Not acquired; touches no file. Keeps a copy of the path and shares fs.
        /// An empty fs throws zvFileAccessError.
        WriteLock(const zvPathString_<zvMBCSSafeString>& directory, const boost::shared_ptr<zvAbstractFS>& fs);

        /// Another handle of the same hold.
        /// @{
        WriteLock(const WriteLock& other);
        WriteLock& operator=(const WriteLock& other);
        /// @}

        /// Of the last handle: ends the hold. Never throws.
        ~WriteLock();

        /// Waits at most `timeout` until nobody reads or writes, then has the
        /// directory alone. Otherwise as ReadLock::acquire(), also in that at
        /// its deadline it goes on without a guard that could not be had: two
        /// writers that try at the same moment can both get a free directory.
        bool acquire(const boost::posix_time::time_duration& timeout, bool skipRefresh);

        /// As above, without limit.
        bool acquire(bool skipRefresh);

        /// acquire() with a timeout of zero; otherwise as
        /// ReadLock::tryAcquire().
        bool tryAcquire(bool skipRefresh);

        /// As ReadLock::release().
        /// @{
        bool release(const boost::posix_time::time_duration& timeout);
        bool release();
        /// @}

        /// As ReadLock::isAcquired().
        bool isAcquired() const;

        /// Becomes a reader, and no other writer can come in between: the
        /// reader's file is there before the writer's goes. The result holds;
        /// this lock then does not. It is refreshed if this one was.
        ///
        /// A result that is not acquired says that this lock was not held, that
        /// another thread was busy with it for `timeout`, or that no reader's
        /// file could be made; this lock is then as it was. So it is when a
        /// failure of the file system leaves as a member of the family, or
        /// boost::thread_interrupted when the thread is interrupted.
        ReadLock downgrade(const boost::posix_time::time_duration& timeout);

        /// As above, however long another thread is busy with it.
        ReadLock downgrade();

        /// downgrade() with a timeout of zero.
        ReadLock tryDowngrade();

    private:
        class Impl;

        boost::shared_ptr<Impl> impl;
    };

    /// Touches no file. Keeps a copy of the text and shares fs. An empty fs is
    /// refused by the locks: getReadLock() and getWriteLock() then throw
    /// zvFileAccessError.
    zvDirectoryReadWriteLock(const std::string& directory, const boost::shared_ptr<zvAbstractFS>& fs);

    /// The same directory and file system.
    /// @{
    zvDirectoryReadWriteLock(const zvDirectoryReadWriteLock& other);
    zvDirectoryReadWriteLock& operator=(const zvDirectoryReadWriteLock& other);
    /// @}

    /// Does not end a hold: the locks live on by themselves.
    ~zvDirectoryReadWriteLock();

    /// A lock of its own at each call, not acquired; it lives on without this
    /// object. Throws zvFileAccessError when the file system is an empty
    /// pointer.
    /// @{
    ReadLock getReadLock() const;
    WriteLock getWriteLock() const;
    /// @}

private:
    zvPathString_<zvMBCSSafeString> directory;
    boost::shared_ptr<zvAbstractFS> fs;
};

/// @}
