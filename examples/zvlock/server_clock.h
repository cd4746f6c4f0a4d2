#pragma once

#include <zorvel/lockfile.h>

#include <boost/shared_ptr.hpp>

#include <string>

namespace zorvel {
namespace zvlock {

/// The clock of the server that a directory lies on, read from a file in it
/// that no lock takes for its own. The file goes with the object.
class ServerClock
{
public:
    /// Throws members of the family of zvFileBasedLockError when the file
    /// cannot be made.
    ServerClock(const std::string& directory, const boost::shared_ptr<zvAbstractFS>& fs);
    ~ServerClock();

    ServerClock(const ServerClock&) = delete;
    ServerClock& operator=(const ServerClock&) = delete;

    /// The file's name without the directory.
    const std::string& fileName() const { return m_name; }

    /// Seconds since 1970-01-01 UTC. Throws as the constructor does.
    zvTime64 now();

private:
    const boost::shared_ptr<zvAbstractFS> m_fs;
    const std::string m_name;
    const std::string m_path;
};

}  // namespace zvlock
}  // namespace zorvel
