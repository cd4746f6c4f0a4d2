#pragma once

#include "dirlock/detail/read_write_hold.h"

/// A writer: waits until nobody reads or writes, and marks itself with the one
/// file of the writer.
class ZORVEL_LOCAL zvDirectoryReadWriteLock::WriteLock::Impl : public zorvel::dirlock::ReadWriteHold
{
public:
    using ReadWriteHold::ReadWriteHold;

    ReadLock downgrade(const boost::posix_time::time_duration& timeout);

private:
    bool mayEnter(const boost::posix_time::ptime& deadline) override;
    boost::shared_ptr<zvLockFile> mark(const boost::posix_time::time_duration& interval) override;

    bool clearStale(const zvPathString& pattern, const boost::posix_time::ptime& deadline);
    Verdict removeLockFileIfStale(const char* name, int staleSeconds, const boost::posix_time::ptime& deadline);
};
