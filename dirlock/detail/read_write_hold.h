#pragma once

#include <zorvel/dirlock.h>

#include <cstdint>

namespace zorvel {
namespace dirlock {

class GuardTurn;

/// What the locks of readers and writers have in common: look under the guard
/// until the directory may be entered, then mark it. Readers and writers
/// differ in what they look for and in their mark.
class ReadWriteHold
{
public:
    ReadWriteHold(const zvPathString& directory, const boost::shared_ptr<zvAbstractFS>& fs);

    /// Held from the start, by a file that is there already.
    ReadWriteHold(const zvPathString& directory, const boost::shared_ptr<zvLockFile>& lockFile,
                  const boost::shared_ptr<zvAbstractFS>& fs);

    virtual ~ReadWriteHold();

    ReadWriteHold(const ReadWriteHold&) = delete;
    ReadWriteHold& operator=(const ReadWriteHold&) = delete;

    bool acquire(const boost::posix_time::time_duration& timeout, bool skipRefresh);
    bool release(const boost::posix_time::time_duration& timeout);
    bool isAcquired();

protected:
    /// One look, under the guard if it came.
    virtual bool mayEnter(const boost::posix_time::ptime& deadline) = 0;

    /// Makes the file that marks the directory, under the guard if it came;
    /// empty when there is none to be had.
    virtual boost::shared_ptr<zvLockFile> mark(const boost::posix_time::time_duration& interval) = 0;

    enum class Verdict
    {
        fresh,
        stale,
        vanished,
    };

    /// Judges a file that may vanish meanwhile: its holder needs no guard to
    /// release it.
    Verdict judge(const char* name, int staleSeconds, const boost::posix_time::ptime& deadline);

    const zvPathString& writeLockName() const { return writerName; }
    const zvPathString& readLockPattern() const { return readerPattern; }

    boost::timed_mutex mutex;
    zvDirectoryExclusiveLock guard;
    std::int32_t count;
    zvPathString directory;
    boost::shared_ptr<zvLockFile> lockFile;
    zvLockFileIsStale isStale;
    boost::shared_ptr<zvAbstractFS> fs;

private:
    /// Joined once: each look asks for them.
    const zvPathString writerName;
    const zvPathString readerPattern;

    void requireSearchable() const;
    bool waitToEnter(const boost::posix_time::ptime& deadline, GuardTurn& guardTurn);
    bool hold(bool skipRefresh);
};

}  // namespace dirlock
}  // namespace zorvel
