#include "examples/zvlock/server_clock.h"

#include <zorvel/errors.h>

#include <random>
#include <sstream>

namespace zorvel {
namespace zvlock {

namespace {

std::string uniqueName()
{
    std::random_device random;
    std::ostringstream name;
    name << ".zvlock_clock." << std::hex << random() << random();
    return name.str();
}

}  // namespace

ServerClock::ServerClock(const std::string& directory, const boost::shared_ptr<zvAbstractFS>& fs)
    : m_fs(fs), m_name(uniqueName()), m_path(directory + "/" + m_name)
{
    if (!m_fs->createFileExclusive(m_path.c_str()))
        throw zvFileAccessError(m_path + " is there already");
}

/// A file that cannot be removed disturbs nobody.
ServerClock::~ServerClock()
{
    try {
        m_fs->removeFile(m_path);
    } catch (const std::exception&) {
    }
}

zvTime64 ServerClock::now()
{
    m_fs->refreshLockFile(m_path);
    return m_fs->getModificationTime(m_path.c_str());
}

}  // namespace zvlock
}  // namespace zorvel
