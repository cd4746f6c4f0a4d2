#include "dirlock/detail/claimed_lock_file.h"

#include <zorvel/dirlock.h>

#include <boost/make_shared.hpp>
#include <boost/thread/exceptions.hpp>
#include <boost/thread/thread.hpp>

#include <new>

namespace zorvel {
namespace dirlock {

namespace {

using boost::posix_time::time_duration;

/// Whatever befalls the removal, the exception under way is the one that leaves.
void removeQuietly(zvAbstractFS& fs, const std::string& name)
{
    const boost::this_thread::disable_interruption uninterrupted;
    try {
        fs.removeFile(name);
    } catch (...) {
    }
}

}  // namespace

time_duration refreshInterval(bool skipRefresh)
{
    if (skipRefresh)
        return boost::posix_time::pos_infin;
    return boost::posix_time::milliseconds(zvDirectoryExclusiveLock::REFRESH_INTERVAL_MSEC);
}

boost::shared_ptr<zvLockFile> makeLockFile(const std::string& name, const time_duration& interval,
                                           const boost::shared_ptr<zvAbstractFS>& fs)
{
    if (interval.is_special())
        return boost::make_shared<zvLockFile>(name, zvLockFile::NO_REFRESH, fs);
    return boost::make_shared<zvLockFile>(name, interval, fs);
}

boost::shared_ptr<zvLockFile> makeClaimedLockFile(const std::string& name, const time_duration& interval,
                                                  const boost::shared_ptr<zvAbstractFS>& fs)
{
    try {
        return makeLockFile(name, interval, fs);
    } catch (const boost::thread_resource_error&) {
        // Without a thread for its refresh the lock file has removed itself; by
        // now the name may be somebody else's.
        throw;
    } catch (const std::bad_alloc&) {
        // Nobody can tell whether it has: a file that goes stale harms less
        // than the removal of a successor's.
        throw;
    } catch (...) {
        removeQuietly(*fs, name);
        throw;
    }
}

}  // namespace dirlock
}  // namespace zorvel
