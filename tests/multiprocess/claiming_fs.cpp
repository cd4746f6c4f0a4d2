#include "tests/multiprocess/claiming_fs.h"

#include "tests/multiprocess/contender.h"

#include <boost/thread/lock_guard.hpp>

namespace zorvel {
namespace test {

namespace {

typedef boost::lock_guard<boost::mutex> Guard;

std::string lastPart(const std::string& name)
{
    return name.substr(name.find_last_of("/\\") + 1);
}

bool isPlaceInQueue(const std::string& name)
{
    return lastPart(name).compare(0, 13, ".deploy_lock.") == 0;
}

}  // namespace

void ClaimingFs::sync()
{
    const Guard guard(m_mutex);
    say("synced");
}

void ClaimingFs::claim(const char* how, const std::string& name)
{
    if (m_own.insert(name).second)
        say(how + lastPart(name));
}

bool ClaimingFs::createFileExclusive(const char* name)
{
    const Guard guard(m_mutex);
    const bool created = m_fs->createFileExclusive(name);
    if (created)
        claim("made ", name);
    return created;
}

/// A level that is touched for the first time was another's; a writer's mark
/// comes into being that way.
bool ClaimingFs::refreshLockFileUntil(const std::string& name, const boost::posix_time::ptime& deadline)
{
    const Guard guard(m_mutex);
    const bool touched = m_fs->refreshLockFileUntil(name, deadline);
    if (touched)
        claim(isPlaceInQueue(name) ? "took " : "made ", name);
    return touched;
}

bool ClaimingFs::removeFileUntil(const std::string& name, const boost::posix_time::ptime& deadline)
{
    const Guard guard(m_mutex);
    const bool removed = m_fs->removeFileUntil(name, deadline);
    if (removed || !m_fs->fileExists(name.c_str())) {
        const bool own = m_own.erase(name) > 0;
        if (own || removed)
            say((own ? "gone " : "cleared ") + lastPart(name));
    }
    return removed;
}

bool ClaimingFs::isDirectory(const char* path)
{
    return m_fs->isDirectory(path);
}

bool ClaimingFs::mkdirP(const char* path)
{
    return m_fs->mkdirP(path);
}

int ClaimingFs::removeEntry(const char* name)
{
    return m_fs->removeEntry(name);
}

bool ClaimingFs::removeRF(const char* path)
{
    return m_fs->removeRF(path);
}

bool ClaimingFs::fileExists(const char* name)
{
    return m_fs->fileExists(name);
}

zvTime64 ClaimingFs::getModificationTime(const char* name)
{
    return m_fs->getModificationTime(name);
}

bool ClaimingFs::anyMatch(const char* pattern)
{
    return m_fs->anyMatch(pattern);
}

int ClaimingFs::findMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& onFile,
                                         const zvStringProcedure& onDir, int depth, bool stopAtFirst)
{
    return m_fs->findMatchingFilesAndDirs(pattern, onFile, onDir, depth, stopAtFirst);
}

unsigned short ClaimingFs::disableWritePermission(const char* path)
{
    return m_fs->disableWritePermission(path);
}

unsigned short ClaimingFs::enableWritePermission(const char* path)
{
    return m_fs->enableWritePermission(path);
}

}  // namespace test
}  // namespace zorvel
