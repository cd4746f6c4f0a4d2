#include <zorvel/dirlock.h>

zvDirectoryExclusiveLock::no_refresh_lock_proxy::no_refresh_lock_proxy(zvDirectoryExclusiveLock& lock) : m_lock(&lock)
{
}

void zvDirectoryExclusiveLock::no_refresh_lock_proxy::lock()
{
    m_lock->acquire(true);
}

void zvDirectoryExclusiveLock::no_refresh_lock_proxy::unlock()
{
    m_lock->release();
}

bool zvDirectoryExclusiveLock::no_refresh_lock_proxy::try_lock()
{
    return m_lock->tryAcquire(true);
}
