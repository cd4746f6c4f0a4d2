#pragma once

#include "dirlock/detail/read_write_hold.h"

/// A reader: lets the writer finish, and marks itself with a file that nobody
/// else has.
class ZORVEL_LOCAL zvDirectoryReadWriteLock::ReadLock::Impl : public zorvel::dirlock::ReadWriteHold
{
public:
    using ReadWriteHold::ReadWriteHold;

private:
    bool mayEnter(const boost::posix_time::ptime& deadline) override;
    boost::shared_ptr<zvLockFile> mark(const boost::posix_time::time_duration& interval) override;
};
