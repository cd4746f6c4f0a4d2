#include "lockfile/detail/file_time_calibration.h"

#include <zorvel/errors.h>

#include "lockfile/lock_name.h"
#include "platform/clock.h"
#include "platform/process.h"
#include "timer/deadline.h"

#include <atomic>
#include <cstdint>

namespace zorvel {
namespace lockfile {

namespace {

using boost::posix_time::ptime;

const int retriesAllowed = 1000;

/// A plain increment, deliberately not an atomic one: a repeated number only
/// costs another attempt at an exclusive creation.
std::uint64_t nextNumber()
{
    static std::atomic<std::uint64_t> counter(0);
    const std::uint64_t number = counter.load(std::memory_order_relaxed) + 1;
    counter.store(number, std::memory_order_relaxed);
    return number;
}

/// Differs between machines and processes by time and process identifier,
/// within a process by the number, and between objects of one process in the
/// same microsecond by the address, which is part of it on purpose.
std::string uniqueName(const ptime& time, const zvPathString& directory)
{
    return "." + std::to_string(time.time_of_day().total_microseconds()) + std::to_string(platform::processId()) +
           std::to_string(nextNumber()) + std::to_string(reinterpret_cast<std::uintptr_t>(directory.c_str()));
}

/// Removes the calibration file on every way out. That it could not be removed
/// is no reason to fail: no lock takes it for one of its own.
class RemovedAtEnd
{
public:
    RemovedAtEnd(zvAbstractFS& fs, const std::string& file, const ptime& deadline)
        : m_fs(fs), m_file(file), m_deadline(deadline), m_pending(true)
    {
    }

    /// On the way out with an exception, which nothing here may replace.
    ~RemovedAtEnd()
    {
        try {
            remove();
        } catch (...) {
        }
    }

    RemovedAtEnd(const RemovedAtEnd&) = delete;
    RemovedAtEnd& operator=(const RemovedAtEnd&) = delete;

    /// Removes it now, so that an interruption of the calling thread can leave.
    void remove()
    {
        if (!m_pending)
            return;
        try {
            m_fs.removeFileUntil(m_file, m_deadline);
        } catch (const zvFileBasedLockError&) {
        }
        m_pending = false;
    }

private:
    zvAbstractFS& m_fs;
    const std::string m_file;
    const ptime m_deadline;
    bool m_pending;
};

}  // namespace

FileTimeCalibration::FileTimeCalibration(const zvPathString& directory, const ptime& deadline,
                                         const boost::shared_ptr<zvAbstractFS>& system)
    : localTime(boost::posix_time::not_a_date_time), fileTime(0), fs(system)
{
    if (holdsNul(directory) || !fs->isDirectory(directory.c_str()))
        throw zvNoSuchDirectory(directory);
    ptime created;
    const std::string file = createUniqueFile(directory, deadline, created);
    RemovedAtEnd removal(*fs, file, deadline);
    fileTime = fs->getModificationTime(file.c_str());
    localTime = created;
    removal.remove();
}

std::string FileTimeCalibration::createUniqueFile(const zvPathString& directory, const ptime& deadline,
                                                  ptime& created) const
{
    for (int failures = 0;; ++failures) {
        created = platform::localTime();
        zvPathString file(directory, uniqueName(created, directory).c_str());
        if (fs->createFileExclusive(file.c_str()))
            return file;
        // Two blanks follow the colon of the whole text; they are part of it.
        if (hasCome(deadline, created) || failures >= retriesAllowed)
            throw zvFileAccessError(" Could not create unique file in " + directory);
    }
}

ptime FileTimeCalibration::operator()(long long time) const
{
    // Cut to 32 bits on purpose, as wide as the duration's own argument is on
    // the product's system: both kinds of machine judge a file alike.
    const std::uint64_t seconds = static_cast<std::uint64_t>(time) - static_cast<std::uint64_t>(fileTime);
    const std::int32_t difference = static_cast<std::int32_t>(seconds);
    return localTime + boost::posix_time::seconds(difference);
}

}  // namespace lockfile
}  // namespace zorvel
