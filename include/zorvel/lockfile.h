#pragma once

/// @file
/// What the directory locks are made of: lock files, their staleness, the file
/// system they live on, logs. What is here: @ref lockfile.

#include <zorvel/export.h>
#include <zorvel/fsutil.h>
#include <zorvel/paths.h>
#include <zorvel/timer.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <ostream>
#include <string>

/// @defgroup lockfile Lock files
/// @brief A file that is kept fresh and removed, whether one is stale, and the file system under the locks.
///
/// The @ref dirlock are made of these; they can be used alone. A lock file says
/// "somebody is at work" by being there and being fresh:
///
/// @include presence.cpp
///
/// Points in time are those of the local wall clock, durations are Boost's.
/// Failures are thrown, see @ref errors. A timer keeps a file fresh, see @ref timer.
/// Between Windows and Linux only the file system differs, where zvAbstractFS
/// says so.
///
/// @{

/// The file operations of the locks. Every lock does all it does on disk
/// through one of these, shared by pointer; zvGetDefaultFSImp() hands out the
/// one for real file systems, and a caller may write another.
///
/// An implementation is called from several threads at once (each held lock
/// refreshes its file on a thread of its own) and keeps no pointer that it is
/// given. Failures that are not the expected answer of an operation are thrown
/// as members of the family of zvFileBasedLockError. Deadlines are points of
/// the local wall clock (boost::posix_time::microsec_clock::local_time());
/// positive infinity is never reached, negative infinity and not-a-date-time
/// are always past. Where an operation is called interruptible,
/// boost::thread_interrupted leaves it when the calling thread is interrupted.
///
/// One that watches what its locks remove, and passes everything on
/// (examples/deploy_demo/worker):
///
/// @include deploy_demo/worker/watching_fs.h
class ZORVEL_API zvAbstractFS
{
public:
    /// There is no state.
    /// @{
    zvAbstractFS();
    virtual ~zvAbstractFS();
    /// @}

    /// Whether the path, normalised, is a directory. False for null and for what
    /// cannot be examined.
    virtual bool isDirectory(const char* path) = 0;

    /// As zvMkdirP().
    virtual bool mkdirP(const char* path) = 0;

    /// Removes one file, in one attempt: 0 on success, -1 on failure.
    virtual int removeEntry(const char* name) = 0;

    /// As zvRemoveRF().
    virtual bool removeRF(const char* path) = 0;

    /// Whether the file exists. Throws zvNoSuchDirectory when neither it nor
    /// its directory does.
    virtual bool fileExists(const char* name) = 0;

    /// Creates an empty file if it does not exist; on a shared file system one
    /// caller of all machines gets true. On Linux the file is readable and
    /// writable by all as far as the umask lets them. False: somebody else has
    /// it. Denied access is tried again for half a second (interruptible), then
    /// thrown as zvPermissionDenied. Throws zvNoSuchDirectory, and
    /// zvFileAccessError for any other reason.
    virtual bool createFileExclusive(const char* name) = 0;

    /// Removes a file, trying again each millisecond (interruptible) while it
    /// is busy and the deadline has not come. False: it was not there, or is
    /// still there. Throws zvPermissionDenied.
    virtual bool removeFileUntil(const std::string& name, const boost::posix_time::ptime& deadline) = 0;

    /// Makes a file's modification time now, creating it when missing. At
    /// least one attempt is made; failures are repeated (interruptible) until
    /// the deadline, then false. Throws zvNoSuchDirectory, and
    /// zvPermissionDenied after half a second of denied access.
    virtual bool refreshLockFileUntil(const std::string& name, const boost::posix_time::ptime& deadline) = 0;

    /// The modification time in whole seconds since 1970-01-01 UTC by the
    /// clock of the file server. Throws zvFileNotFoundError for a missing file,
    /// zvFileAccessError for any other reason. The default file system asks
    /// again (interruptible) for up to a second before it believes a time more
    /// than a day away from the local clock, which a file that is just being
    /// created on NFS may have, and while the file is being removed.
    ///
    /// Linux: the server of a share is asked, whatever its client remembers.
    /// Windows: the client may answer; only those further questions go to the
    /// server.
    virtual zvTime64 getModificationTime(const char* name) = 0;

    /// Whether anything matches the pattern (see zvFindMatchingFilesAndDirs()).
    /// A missing directory holds nothing; one that cannot be listed throws
    /// zvFileAccessError: nobody may take it for empty. Linux: a pattern with
    /// wild cards is looked for in the directory itself, not in what a share's
    /// client remembers of an earlier listing. Windows: the client may answer.
    virtual bool anyMatch(const char* pattern) = 0;

    /// As zvFindMatchingFilesAndDirs().
    virtual int findMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& onFile,
                                         const zvStringProcedure& onDir, int depth, bool stopAtFirst) = 0;

    /// As zvDisableWritePermission().
    virtual unsigned short disableWritePermission(const char* path) = 0;

    /// As zvEnableWritePermission().
    virtual unsigned short enableWritePermission(const char* path) = 0;

    /// As removeFileUntil(), with a deadline one second, or `timeout`, from now.
    /// @{
    bool removeFile(const std::string& name);
    bool removeFile(const std::string& name, const boost::posix_time::time_duration& timeout);
    /// @}

    /// As refreshLockFileUntil(), with a deadline one second, or `timeout`, from
    /// now.
    /// @{
    bool refreshLockFile(const std::string& name);
    bool refreshLockFile(const std::string& name, const boost::posix_time::time_duration& timeout);
    /// @}
};

/// The file system of the machine, local or network: one object for the whole
/// process, without state, for any thread. Lives until the library is unloaded.
ZORVEL_API const boost::shared_ptr<zvAbstractFS> zvGetDefaultFSImp();

/// Owns a lock file: touches it when made, keeps its modification time fresh
/// on a thread of its own, removes it when destroyed. It does not decide who
/// may have the lock.
///
/// An empty fs throws zvFileAccessError, a name with a NUL in it
/// zvNoSuchDirectory. When the first touch throws, the file is left as it is,
/// to whoever claimed the name; when the refresh cannot be started, the file is
/// removed before that exception leaves.
///
/// Any thread may call the members. Share one object by pointer. A copy shares
/// the refresh, and the first of the copies to be destroyed ends the refresh and
/// removes the file for all.
class ZORVEL_API zvLockFile
{
public:
    /// The type of #NO_REFRESH.
    struct ZORVEL_API no_refresh_tag
    {
    };

    /// Stands in the place of an interval for a file that is not refreshed.
    static const no_refresh_tag NO_REFRESH;

    /// A file that is touched once and not again: others may take it for
    /// stale 30 seconds later. Keeps a copy of the name and shares fs.
    /// Exceptions of the first touch leave; one that only timed out is not an
    /// error.
    zvLockFile(const std::string& name, const no_refresh_tag&, const boost::shared_ptr<zvAbstractFS>& fs);

    /// A file that is touched now and at every interval (not at all for the special
    /// values of a duration). Keeps a copy of the name and shares fs. Exceptions of
    /// the first touch and of zvSetTimer() leave. A refresh that throws later ends
    /// the refreshing; the owner is not told.
    zvLockFile(const std::string& name, boost::posix_time::time_duration refreshInterval,
               const boost::shared_ptr<zvAbstractFS>& fs);

    /// Shares the refresh and the file: whichever of the two goes first ends
    /// both. Touches nothing.
    zvLockFile(const zvLockFile& other);

    /// Not assignable: a lock file stays what it is.
    zvLockFile& operator=(const zvLockFile&) = delete;

    /// Ends the refresh (it waits for one that is under way), then removes the
    /// file, trying for a second. Never throws; a file that could not be removed
    /// goes stale.
    ~zvLockFile();

    /// The name as it was given.
    std::string getName();

    /// As it was given; positive infinity for a file made with NO_REFRESH.
    boost::posix_time::time_duration getRefreshInterval() const;

    /// Whether the file exists, whoever made it. Throws zvNoSuchDirectory when
    /// its directory is gone.
    operator bool() const;

private:
    std::string name;
    boost::shared_ptr<zvTimerTask> timer;
    boost::posix_time::time_duration refreshInterval;
    boost::shared_ptr<zvAbstractFS> fs;
};

/// Tells whether a lock file of one directory is stale: its modification time,
/// translated from the file server's clock to the local one, lies more than a
/// given time back. The two clocks are compared once, at the first question,
/// by a file made and removed in the directory. One thread at a time.
class ZORVEL_API zvLockFileIsStale
{
public:
    /// Does not touch the disk. Keeps a copy of the path and shares fs. An empty
    /// fs throws zvFileAccessError.
    zvLockFileIsStale(const zvPathString_<zvMBCSSafeString>& directory, const boost::shared_ptr<zvAbstractFS>& fs);

    /// A copy made after the first question shares the comparison of clocks.
    zvLockFileIsStale(const zvLockFileIsStale& other);

    /// Not assignable: a directory's question stays its own.
    zvLockFileIsStale& operator=(const zvLockFileIsStale&) = delete;

    /// Touches nothing.
    ~zvLockFileIsStale();

    /// Whether the file was last refreshed more than timeoutSec seconds ago.
    /// The deadline (local wall clock) bounds the first question's comparison
    /// of clocks only, which makes at least one attempt. Throws
    /// zvFileNotFoundError for a missing file, zvNoSuchDirectory,
    /// zvPermissionDenied, zvFileAccessError; a failed comparison is made
    /// again at the next question. Interruptible.
    bool operator()(const char* name, long timeoutSec, const boost::posix_time::ptime& deadline);

private:
    zvPathString_<zvMBCSSafeString> directory;
    boost::shared_ptr<boost::function1<boost::posix_time::ptime, long long>> calibration;
    boost::shared_ptr<zvAbstractFS> fs;
};

/// A log that is on or off for good. Whatever is written while it is off is
/// neither formatted nor kept. Lines of several threads may interleave.
///
/// The library's own three write to `std::cout` and `std::cerr`, and are switched
/// on by environment variables, set to anything before it is loaded:
/// `ZORVEL_FSLOCK_VERBOSE`, `ZORVEL_FSLOCK_WARNING`, `ZORVEL_FSLOCK_STALE_LOG`
/// (see [How the directory locks work](@ref locking)).
class ZORVEL_API zvLogger
{
public:
    /// The stream is the caller's and must outlive the logger.
    zvLogger(bool enabled, std::ostream& stream);

    /// Applies a manipulator such as std::endl, while the log is on. Exceptions
    /// of the stream leave.
    zvLogger& operator<<(std::ostream& (*manipulator)(std::ostream&));

    /// Writes a value with the stream's own operator, while the log is on.
    template <class T>
    zvLogger& operator<<(const T& value)
    {
        if (enabled)
            *stream << value;
        return *this;
    }

private:
    bool enabled;
    std::ostream* stream;
};

/// @}
