#pragma once

#include <zorvel/lockfile.h>

namespace zorvel {
namespace lockfile {

/// The file operations on the machine's own file systems, local or network.
/// Without state; any number of threads.
class zvNetworkFS : public zvAbstractFS
{
public:
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
};

}  // namespace lockfile
}  // namespace zorvel
