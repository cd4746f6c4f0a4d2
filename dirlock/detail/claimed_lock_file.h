#pragma once

#include <zorvel/lockfile.h>

#include <string>

namespace zorvel {
namespace dirlock {

/// How often the lock file of a hold is refreshed; positive infinity: never.
boost::posix_time::time_duration refreshInterval(bool skipRefresh);

/// Makes the lock file object that touches and refreshes a file.
boost::shared_ptr<zvLockFile> makeLockFile(const std::string& name, const boost::posix_time::time_duration& interval,
                                           const boost::shared_ptr<zvAbstractFS>& fs);

/// The same for a file that this process has claimed: on an exception the file
/// goes before the exception leaves (except when memory is exhausted: it is then
/// unknown whether it has gone already).
boost::shared_ptr<zvLockFile> makeClaimedLockFile(const std::string& name,
                                                  const boost::posix_time::time_duration& interval,
                                                  const boost::shared_ptr<zvAbstractFS>& fs);

}  // namespace dirlock
}  // namespace zorvel
