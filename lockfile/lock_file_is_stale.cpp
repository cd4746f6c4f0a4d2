#include <zorvel/lockfile.h>

#include "lockfile/detail/file_time_calibration.h"
#include "lockfile/detail/require_fs.h"
#include "platform/clock.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

using boost::posix_time::ptime;
using zorvel::lockfile::FileTimeCalibration;

typedef boost::function1<ptime, long long> Translation;

/// A timeout of more than 68 years is as good as one of 68.
boost::posix_time::time_duration secondsOf(long timeoutSec)
{
    typedef std::numeric_limits<std::int32_t> Range;
    return boost::posix_time::seconds(std::clamp<long long>(timeoutSec, Range::min(), Range::max()));
}

}  // namespace

zvLockFileIsStale::zvLockFileIsStale(const zvPathString& dir, const boost::shared_ptr<zvAbstractFS>& system)
    : directory(dir), fs(zorvel::lockfile::requireFS(system))
{
}

zvLockFileIsStale::zvLockFileIsStale(const zvLockFileIsStale& other) = default;

zvLockFileIsStale::~zvLockFileIsStale() = default;

bool zvLockFileIsStale::operator()(const char* name, long timeoutSec, const ptime& deadline)
{
    if (!calibration)
        calibration = boost::make_shared<Translation>(FileTimeCalibration(directory, deadline, fs));
    const ptime now = zorvel::platform::localTime();
    const ptime refreshed = (*calibration)(fs->getModificationTime(name));
    // Strictly: a file refreshed exactly timeoutSec ago is not stale yet.
    return refreshed + secondsOf(timeoutSec) < now;
}
