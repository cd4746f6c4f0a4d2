#pragma once

#include "examples/zvlock/options.h"

#include <memory>
#include <string>

namespace zorvel {
namespace zvlock {

/// One of the locks on a directory. What is held is released at the end.
class DirectoryLock
{
public:
    virtual ~DirectoryLock() = default;

    /// Waits until it is acquired, or at most `limit` for an exclusive lock;
    /// the others do not mind the limit (see interruptsAtLimit). False: not
    /// acquired. Throws what the locks throw, boost::thread_interrupted too.
    virtual bool acquire(const boost::posix_time::time_duration& limit) = 0;

    /// Whether it must be told to give up when the limit is reached. At the
    /// end of a limit of their own, readers and writers go on without the guard
    /// that keeps two of them from coming in at once.
    virtual bool interruptsAtLimit() const = 0;
};

std::unique_ptr<DirectoryLock> makeLock(Kind kind, const std::string& directory);

}  // namespace zvlock
}  // namespace zorvel
