#pragma once

#include <zorvel/lockfile.h>

#include <chrono>

namespace zorvel {
namespace bench {

/// A file system as on a distant server: each operation travels to it for half of the latency, is done there, and its
/// answer travels back for the other half.
class DelayingFs : public zvAbstractFS
{
public:
    DelayingFs(const boost::shared_ptr<zvAbstractFS>& server, std::chrono::microseconds latency);

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
    class Journey;

    boost::shared_ptr<zvAbstractFS> m_server;
    std::chrono::microseconds m_latency;
};

}  // namespace bench
}  // namespace zorvel
