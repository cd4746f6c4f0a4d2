#include "lockfile/detail/periodic_refresh.h"
#include "lockfile/detail/require_fs.h"

#include "lockfile/lock_name.h"
#include "platform/clock.h"

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>

namespace {

using boost::posix_time::time_duration;

/// What the timer calls. It keeps a name and a file system of its own, so it
/// never looks at the lock file object. On its way to the timer's thread it is
/// copied several times, and so it is no more than a pointer to them.
class Refresh
{
public:
    Refresh(const boost::shared_ptr<zvAbstractFS>& fs, const std::string& name)
        : m_own(boost::make_shared<Own>(Own{fs, name}))
    {
    }

    void operator()() const
    {
        const zorvel::lockfile::PeriodicRefresh periodic;
        m_own->fs->refreshLockFile(m_own->name);
    }

private:
    struct Own
    {
        const boost::shared_ptr<zvAbstractFS> fs;
        const std::string name;
    };

    boost::shared_ptr<const Own> m_own;
};

boost::posix_time::ptime oneSecondFromNow()
{
    return zorvel::platform::localTime() + boost::posix_time::seconds(1);
}

void requireName(const std::string& name)
{
    if (zorvel::holdsNul(name))
        throw zvNoSuchDirectory(name);
}

/// Removes the file, whatever happens; there is nobody left to tell.
void removeQuietly(zvAbstractFS& fs, const std::string& name)
{
    try {
        fs.removeFileUntil(name, oneSecondFromNow());
    } catch (...) {
    }
}

}  // namespace

const zvLockFile::no_refresh_tag zvLockFile::NO_REFRESH = {};

zvLockFile::zvLockFile(const std::string& file, const no_refresh_tag&, const boost::shared_ptr<zvAbstractFS>& system)
    : name(file), refreshInterval(boost::posix_time::pos_infin), fs(zorvel::lockfile::requireFS(system))
{
    requireName(name);
    // A first touch that only timed out is not an error.
    fs->refreshLockFileUntil(name, oneSecondFromNow());
}

zvLockFile::zvLockFile(const std::string& file, time_duration interval, const boost::shared_ptr<zvAbstractFS>& system)
    : name(file), refreshInterval(interval), fs(zorvel::lockfile::requireFS(system))
{
    requireName(name);
    fs->refreshLockFileUntil(name, oneSecondFromNow());
    if (refreshInterval.is_special())
        return;
    try {
        timer = zvSetTimer(Refresh(fs, name), refreshInterval, true);
    } catch (...) {
        // Nobody would keep the file fresh.
        const boost::this_thread::disable_interruption uninterrupted;
        removeQuietly(*fs, name);
        throw;
    }
}

zvLockFile::zvLockFile(const zvLockFile& other) = default;

zvLockFile::~zvLockFile()
{
    // An interrupted join would leave the refresh running, and it would bring
    // the file back after it was removed.
    const boost::this_thread::disable_interruption uninterrupted;
    if (timer)
        timer->cancel();
    removeQuietly(*fs, name);
}

std::string zvLockFile::getName()
{
    return name;
}

time_duration zvLockFile::getRefreshInterval() const
{
    return refreshInterval;
}

zvLockFile::operator bool() const
{
    return fs->fileExists(name.c_str());
}
