#include "examples/deploy_demo/worker/watching_fs.h"

namespace zorvel {
namespace demo {

WatchingFS::WatchingFS(const boost::shared_ptr<zvAbstractFS>& below, const Listener& onRemoved)
    : m_below(below), m_onRemoved(onRemoved)
{
}

bool WatchingFS::removeFileUntil(const std::string& name, const boost::posix_time::ptime& deadline)
{
    const bool removed = m_below->removeFileUntil(name, deadline);
    if (removed)
        m_onRemoved(name);
    return removed;
}

bool WatchingFS::isDirectory(const char* path)
{
    return m_below->isDirectory(path);
}

bool WatchingFS::mkdirP(const char* path)
{
    return m_below->mkdirP(path);
}

int WatchingFS::removeEntry(const char* name)
{
    return m_below->removeEntry(name);
}

bool WatchingFS::removeRF(const char* path)
{
    return m_below->removeRF(path);
}

bool WatchingFS::fileExists(const char* name)
{
    return m_below->fileExists(name);
}

bool WatchingFS::createFileExclusive(const char* name)
{
    return m_below->createFileExclusive(name);
}

bool WatchingFS::refreshLockFileUntil(const std::string& name, const boost::posix_time::ptime& deadline)
{
    return m_below->refreshLockFileUntil(name, deadline);
}

zvTime64 WatchingFS::getModificationTime(const char* name)
{
    return m_below->getModificationTime(name);
}

bool WatchingFS::anyMatch(const char* pattern)
{
    return m_below->anyMatch(pattern);
}

int WatchingFS::findMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& onFile,
                                         const zvStringProcedure& onDir, int depth, bool stopAtFirst)
{
    return m_below->findMatchingFilesAndDirs(pattern, onFile, onDir, depth, stopAtFirst);
}

unsigned short WatchingFS::disableWritePermission(const char* path)
{
    return m_below->disableWritePermission(path);
}

unsigned short WatchingFS::enableWritePermission(const char* path)
{
    return m_below->enableWritePermission(path);
}

}  // namespace demo
}  // namespace zorvel
