#include <zorvel/dirlock.h>

const int zvDirectoryReadWriteLock::ACQUIRE_POLL_INTERVAL_MSEC;
const int zvDirectoryReadWriteLock::REFRESH_INTERVAL_MSEC;
const int zvDirectoryReadWriteLock::STALE_TIMEOUT_SEC;

zvDirectoryReadWriteLock::zvDirectoryReadWriteLock(const std::string& dir,
                                                   const boost::shared_ptr<zvAbstractFS>& system)
    : directory(dir), fs(system)
{
}

zvDirectoryReadWriteLock::zvDirectoryReadWriteLock(const zvDirectoryReadWriteLock& other) = default;
zvDirectoryReadWriteLock& zvDirectoryReadWriteLock::operator=(const zvDirectoryReadWriteLock& other) = default;
zvDirectoryReadWriteLock::~zvDirectoryReadWriteLock() = default;

zvDirectoryReadWriteLock::ReadLock zvDirectoryReadWriteLock::getReadLock() const
{
    return ReadLock(directory, fs);
}

zvDirectoryReadWriteLock::WriteLock zvDirectoryReadWriteLock::getWriteLock() const
{
    return WriteLock(directory, fs);
}
