#pragma once

#include <zorvel/lockfile.h>

#include <functional>

namespace zorvel {
namespace demo {

/// A file system for locks that tells which files its locks remove and does all
/// else as the one below it.
class WatchingFS : public zvAbstractFS
{
public:
    /// Called with the name of a file after its removal, by the thread that
    /// removed it.
    typedef std::function<void(const std::string& name)> Listener;

    WatchingFS(const boost::shared_ptr<zvAbstractFS>& below, const Listener& onRemoved);

    bool isDirectory(const char* path) override;
    bool mkdirP(const char* path) override;
    int removeEntry(const char* name) override;
    bool removeRF(const char* path) override;
    bool fileExists(const char* name) override;
    bool createFileExclusive(const char* name) override;
    bool removeFileUntil(const std::string& name, const boost::posix_time::ptime& deadline) override;
    bool refreshLockFileUntil(const std::string& name, const boost::posix_time::ptime& deadline) override;
    zvTime64 getModificationTime(const char* name) override;
    bool anyMatch(const char* pattern) override;
    int findMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& onFile, const zvStringProcedure& onDir,
                                 int depth, bool stopAtFirst) override;
    unsigned short disableWritePermission(const char* path) override;
    unsigned short enableWritePermission(const char* path) override;

private:
    const boost::shared_ptr<zvAbstractFS> m_below;
    const Listener m_onRemoved;
};

}  // namespace demo
}  // namespace zorvel
