#include "dirlock/detail/read_lock.h"

#include <zorvel/errors.h>

#include "dirlock/detail/read_lock_file.h"

#include <boost/make_shared.hpp>

namespace {

using boost::posix_time::time_duration;

const time_duration withoutLimit(boost::posix_time::pos_infin);
const time_duration noTime(0, 0, 0);

zvPathString directoryOf(const boost::shared_ptr<zvLockFile>& lockFile)
{
    if (!lockFile)
        throw zvFileAccessError("No lock file was given");
    return zvPathString(lockFile->getName()).directoryPart();
}

}  // namespace

zvDirectoryReadWriteLock::ReadLock::ReadLock(const zvPathString& directory, const boost::shared_ptr<zvAbstractFS>& fs)
    : impl(boost::make_shared<Impl>(directory, fs))
{
}

zvDirectoryReadWriteLock::ReadLock::ReadLock(const boost::shared_ptr<zvLockFile>& lockFile,
                                             const boost::shared_ptr<zvAbstractFS>& fs)
    : impl(boost::make_shared<Impl>(directoryOf(lockFile), lockFile, fs))
{
}

zvDirectoryReadWriteLock::ReadLock::ReadLock(const ReadLock& other) = default;
zvDirectoryReadWriteLock::ReadLock& zvDirectoryReadWriteLock::ReadLock::operator=(const ReadLock& other) = default;
zvDirectoryReadWriteLock::ReadLock::~ReadLock() = default;

bool zvDirectoryReadWriteLock::ReadLock::acquire(const time_duration& timeout, bool skipRefresh)
{
    return impl->acquire(timeout, skipRefresh);
}

bool zvDirectoryReadWriteLock::ReadLock::acquire(bool skipRefresh)
{
    return impl->acquire(withoutLimit, skipRefresh);
}

bool zvDirectoryReadWriteLock::ReadLock::tryAcquire(bool skipRefresh)
{
    return impl->acquire(noTime, skipRefresh);
}

bool zvDirectoryReadWriteLock::ReadLock::release(const time_duration& timeout)
{
    return impl->release(timeout);
}

bool zvDirectoryReadWriteLock::ReadLock::release()
{
    return impl->release(withoutLimit);
}

bool zvDirectoryReadWriteLock::ReadLock::isAcquired() const
{
    return impl->isAcquired();
}

/// A stale writer's file is removed; whether that succeeds is not looked at,
/// on purpose: its holder is gone either way.
bool zvDirectoryReadWriteLock::ReadLock::Impl::mayEnter(const boost::posix_time::ptime& deadline)
{
    const zvPathString& writer = writeLockName();
    if (!fs->anyMatch(writer.c_str()))
        return true;
    if (judge(writer.c_str(), STALE_TIMEOUT_SEC, deadline) != Verdict::stale)
        return false;
    fs->removeFile(writer, boost::posix_time::seconds(1));
    return true;
}

boost::shared_ptr<zvLockFile> zvDirectoryReadWriteLock::ReadLock::Impl::mark(const time_duration& interval)
{
    return zorvel::dirlock::makeReadLockFile(directory, interval, fs);
}
