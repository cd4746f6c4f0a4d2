#include "dirlock/detail/read_lock_file.h"
#include "dirlock/detail/timed_turn.h"
#include "dirlock/detail/write_lock.h"

using boost::posix_time::time_duration;

zvDirectoryReadWriteLock::ReadLock zvDirectoryReadWriteLock::WriteLock::downgrade(const time_duration& timeout)
{
    return impl->downgrade(timeout);
}

zvDirectoryReadWriteLock::ReadLock zvDirectoryReadWriteLock::WriteLock::downgrade()
{
    return impl->downgrade(boost::posix_time::pos_infin);
}

zvDirectoryReadWriteLock::ReadLock zvDirectoryReadWriteLock::WriteLock::tryDowngrade()
{
    return impl->downgrade(time_duration(0, 0, 0));
}

/// The reader's file is made before the writer's goes, so that no other writer
/// comes in between; for the same reason no guard is needed.
zvDirectoryReadWriteLock::ReadLock zvDirectoryReadWriteLock::WriteLock::Impl::downgrade(const time_duration& timeout)
{
    const zorvel::dirlock::TimedTurn turn(mutex, timeout);
    if (!turn || count == 0)
        return ReadLock(directory, fs);
    const boost::shared_ptr<zvLockFile> reader =
        zorvel::dirlock::makeReadLockFile(directory, lockFile->getRefreshInterval(), fs);
    if (!reader)
        return ReadLock(directory, fs);
    // Made while the writer's file still stands: should it fail, the writer is
    // as it was.
    const ReadLock held(reader, fs);
    lockFile.reset();
    count = 0;
    return held;
}
