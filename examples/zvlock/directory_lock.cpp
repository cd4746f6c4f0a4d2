#include "examples/zvlock/directory_lock.h"

#include <zorvel/dirlock.h>

namespace zorvel {
namespace zvlock {

namespace {

class ExclusiveLock : public DirectoryLock
{
public:
    explicit ExclusiveLock(const std::string& directory) : m_lock(directory, "zvlock", zvGetDefaultFSImp()) {}

    bool acquire(const boost::posix_time::time_duration& limit) override { return m_lock.acquire(limit, false); }
    bool interruptsAtLimit() const override { return false; }

private:
    zvDirectoryExclusiveLock m_lock;
};

/// Either part of the read-write lock.
template <class Part>
class SharedLock : public DirectoryLock
{
public:
    explicit SharedLock(const Part& part) : m_part(part) {}

    bool acquire(const boost::posix_time::time_duration&) override { return m_part.acquire(false); }
    bool interruptsAtLimit() const override { return true; }

private:
    Part m_part;
};

}  // namespace

std::unique_ptr<DirectoryLock> makeLock(Kind kind, const std::string& directory)
{
    if (kind == Kind::exclusive)
        return std::make_unique<ExclusiveLock>(directory);
    const zvDirectoryReadWriteLock lock(directory, zvGetDefaultFSImp());
    if (kind == Kind::read)
        return std::make_unique<SharedLock<zvDirectoryReadWriteLock::ReadLock>>(lock.getReadLock());
    return std::make_unique<SharedLock<zvDirectoryReadWriteLock::WriteLock>>(lock.getWriteLock());
}

}  // namespace zvlock
}  // namespace zorvel
