#pragma once

#include <zorvel/lockfile.h>

#include <boost/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include <set>
#include <string>

namespace zorvel {
namespace test {

/// Passes all operations on, and says which lock files this process has: "made
/// NAME" for one that it created, "took NAME" for a place in the queue that was
/// another's, "gone NAME" when it has removed its own; and "cleared NAME" for
/// one that it removed and never had.
///
/// The names on disk hold no owner. With these lines, and sync(), whoever
/// listens knows what belongs to the living; all else is left by the dead.
class ClaimingFs : public zvAbstractFS
{
public:
    explicit ClaimingFs(const boost::shared_ptr<zvAbstractFS>& fs) : m_fs(fs) {}

    /// Says "synced". What was done to lock files before has been said then.
    void sync();

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
    void claim(const char* how, const std::string& name);

    const boost::shared_ptr<zvAbstractFS> m_fs;
    /// Held over an operation and what is said about it.
    boost::mutex m_mutex;
    std::set<std::string> m_own;
};

}  // namespace test
}  // namespace zorvel
