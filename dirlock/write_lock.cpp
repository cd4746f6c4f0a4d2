#include "dirlock/detail/write_lock.h"

#include "dirlock/detail/claimed_lock_file.h"

#include <boost/make_shared.hpp>

namespace {

using boost::posix_time::time_duration;

const time_duration withoutLimit(boost::posix_time::pos_infin);
const time_duration noTime(0, 0, 0);

}  // namespace

zvDirectoryReadWriteLock::WriteLock::WriteLock(const zvPathString& directory, const boost::shared_ptr<zvAbstractFS>& fs)
    : impl(boost::make_shared<Impl>(directory, fs))
{
}

zvDirectoryReadWriteLock::WriteLock::WriteLock(const WriteLock& other) = default;
zvDirectoryReadWriteLock::WriteLock& zvDirectoryReadWriteLock::WriteLock::operator=(const WriteLock& other) = default;
zvDirectoryReadWriteLock::WriteLock::~WriteLock() = default;

bool zvDirectoryReadWriteLock::WriteLock::acquire(const time_duration& timeout, bool skipRefresh)
{
    return impl->acquire(timeout, skipRefresh);
}

bool zvDirectoryReadWriteLock::WriteLock::acquire(bool skipRefresh)
{
    return impl->acquire(withoutLimit, skipRefresh);
}

bool zvDirectoryReadWriteLock::WriteLock::tryAcquire(bool skipRefresh)
{
    return impl->acquire(noTime, skipRefresh);
}

bool zvDirectoryReadWriteLock::WriteLock::release(const time_duration& timeout)
{
    return impl->release(timeout);
}

bool zvDirectoryReadWriteLock::WriteLock::release()
{
    return impl->release(withoutLimit);
}

bool zvDirectoryReadWriteLock::WriteLock::isAcquired() const
{
    return impl->isAcquired();
}

/// Clears what the dead have left, then looks whether anybody is there. No
/// mark tells that a writer waits, so readers who come meanwhile are let in.
///
/// A writer needs no guard to become a reader. Who does so after the look for
/// readers and before the one for the writer is seen by neither; but then its
/// writer's file was there when the dead were cleared, and only then is a third
/// look needed.
bool zvDirectoryReadWriteLock::WriteLock::Impl::mayEnter(const boost::posix_time::ptime& deadline)
{
    const zvPathString& readers = readLockPattern();
    const zvPathString& writer = writeLockName();
    clearStale(readers, deadline);
    const bool writerWasThere = clearStale(writer, deadline);
    if (fs->anyMatch(readers.c_str()) || fs->anyMatch(writer.c_str()))
        return false;
    return !writerWasThere || !fs->anyMatch(readers.c_str());
}

/// Removes what a pattern matches and is stale; whether something is fresh.
bool zvDirectoryReadWriteLock::WriteLock::Impl::clearStale(const zvPathString& pattern,
                                                           const boost::posix_time::ptime& deadline)
{
    bool isFresh = false;
    const auto look = [&](const char* name) {
        if (removeLockFileIfStale(name, STALE_TIMEOUT_SEC, deadline) == Verdict::fresh)
            isFresh = true;
    };
    const zvStringProcedureAdapter<decltype(look)> onFile(look);
    fs->findMatchingFilesAndDirs(pattern.c_str(), onFile, zvIgnoreString(), 0, false);
    return isFresh;
}

/// Whether the removal succeeds is not looked at: the next look tells.
zvDirectoryReadWriteLock::WriteLock::Impl::Verdict
zvDirectoryReadWriteLock::WriteLock::Impl::removeLockFileIfStale(const char* name, int staleSeconds,
                                                                 const boost::posix_time::ptime& deadline)
{
    const Verdict verdict = judge(name, staleSeconds, deadline);
    if (verdict == Verdict::stale)
        fs->removeFileUntil(name, deadline);
    return verdict;
}

/// The file is not created exclusively: it comes into being by its first
/// touch. Under the guard nobody else makes it, so it is this process's to
/// remove should that fail; without the guard it may be somebody else's.
boost::shared_ptr<zvLockFile> zvDirectoryReadWriteLock::WriteLock::Impl::mark(const time_duration& interval)
{
    const zvPathString& name = writeLockName();
    if (guard.isAcquired())
        return zorvel::dirlock::makeClaimedLockFile(name, interval, fs);
    return zorvel::dirlock::makeLockFile(name, interval, fs);
}
