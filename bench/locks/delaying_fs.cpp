#include "bench/locks/delaying_fs.h"

#include <thread>

namespace zorvel {
namespace bench {

/// There and back, also of an answer that is an exception.
class DelayingFs::Journey
{
public:
    explicit Journey(const DelayingFs& fs) : m_half(fs.m_latency / 2) { travel(); }
    ~Journey() { travel(); }

    Journey(const Journey&) = delete;
    Journey& operator=(const Journey&) = delete;

private:
    void travel() const
    {
        if (m_half.count() > 0)
            std::this_thread::sleep_for(m_half);
    }

    const std::chrono::microseconds m_half;
};

DelayingFs::DelayingFs(const boost::shared_ptr<zvAbstractFS>& server, std::chrono::microseconds latency)
    : m_server(server), m_latency(latency)
{
}

bool DelayingFs::isDirectory(const char* path)
{
    const Journey journey(*this);
    return m_server->isDirectory(path);
}

bool DelayingFs::mkdirP(const char* path)
{
    const Journey journey(*this);
    return m_server->mkdirP(path);
}

int DelayingFs::removeEntry(const char* name)
{
    const Journey journey(*this);
    return m_server->removeEntry(name);
}

bool DelayingFs::removeRF(const char* path)
{
    const Journey journey(*this);
    return m_server->removeRF(path);
}

bool DelayingFs::fileExists(const char* name)
{
    const Journey journey(*this);
    return m_server->fileExists(name);
}

bool DelayingFs::createFileExclusive(const char* name)
{
    const Journey journey(*this);
    return m_server->createFileExclusive(name);
}

bool DelayingFs::removeFileUntil(const std::string& name, const boost::posix_time::ptime& deadline)
{
    const Journey journey(*this);
    return m_server->removeFileUntil(name, deadline);
}

bool DelayingFs::refreshLockFileUntil(const std::string& name, const boost::posix_time::ptime& deadline)
{
    const Journey journey(*this);
    return m_server->refreshLockFileUntil(name, deadline);
}

zvTime64 DelayingFs::getModificationTime(const char* name)
{
    const Journey journey(*this);
    return m_server->getModificationTime(name);
}

bool DelayingFs::anyMatch(const char* pattern)
{
    const Journey journey(*this);
    return m_server->anyMatch(pattern);
}

int DelayingFs::findMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& onFile,
                                         const zvStringProcedure& onDir, int depth, bool stopAtFirst)
{
    const Journey journey(*this);
    return m_server->findMatchingFilesAndDirs(pattern, onFile, onDir, depth, stopAtFirst);
}

unsigned short DelayingFs::disableWritePermission(const char* path)
{
    const Journey journey(*this);
    return m_server->disableWritePermission(path);
}

unsigned short DelayingFs::enableWritePermission(const char* path)
{
    const Journey journey(*this);
    return m_server->enableWritePermission(path);
}

}  // namespace bench
}  // namespace zorvel
