#include <zorvel/lockfile.h>

#include "platform/clock.h"
#include "timer/deadline.h"

namespace {

const boost::posix_time::seconds standardPatience(1);

boost::posix_time::ptime fromNow(const boost::posix_time::time_duration& timeout)
{
    return zorvel::deadlineAfter(zorvel::platform::localTime(), timeout);
}

}  // namespace

zvAbstractFS::zvAbstractFS() = default;

zvAbstractFS::~zvAbstractFS() = default;

bool zvAbstractFS::removeFile(const std::string& name)
{
    return removeFile(name, standardPatience);
}

bool zvAbstractFS::removeFile(const std::string& name, const boost::posix_time::time_duration& timeout)
{
    return removeFileUntil(name, fromNow(timeout));
}

bool zvAbstractFS::refreshLockFile(const std::string& name)
{
    return refreshLockFile(name, standardPatience);
}

bool zvAbstractFS::refreshLockFile(const std::string& name, const boost::posix_time::time_duration& timeout)
{
    return refreshLockFileUntil(name, fromNow(timeout));
}
