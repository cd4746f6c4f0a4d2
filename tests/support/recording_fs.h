#pragma once

#include <zorvel/lockfile.h>

#include <boost/optional.hpp>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A deadline seen from the fake clock's now: "+1000000us", "-5us", "now",
/// "+inf", "-inf", "nadt".
std::string offsetFromNow(const boost::posix_time::ptime& deadline);

/// One operation of the locks on a file system.
struct Operation
{
    std::size_t number;  ///< counted from 1
    std::string verb;    ///< isDirectory, exists, create, remove, refresh, mtime, or the slot's name
    std::string name;    ///< the path
    boost::optional<boost::posix_time::ptime> deadline;
    std::string walk;  ///< depth and "stop at the first" of a walk: "0 false"

    /// "remove DIR/.deploy_lock.1 +1000000us", without the result.
    std::string text() const;
};

/// A file system in memory that writes down what is asked of it. Files have a
/// modification time, stamped by a server whose clock is the fake universal
/// clock plus an offset. Of paths only these are known: the files, and the
/// directories that addDirectory() named. A pattern is a path, or one that
/// ends in its only '*'; a walk hands out what was there when it began, in the
/// order of the names, and descends nowhere. Thread-safe.
///
/// Each operation: the hook runs (it may change the files, move the clock or
/// throw), then the file system answers. The lines in the log are in the order
/// in which the operations began and have the results: "create DIR/x -> true",
/// "-> file not found" for what was thrown.
class RecordingFs : public zvAbstractFS
{
public:
    typedef std::function<void(const Operation&)> Hook;
    /// What a yes-no operation is to answer without being done; nothing: as
    /// usual. It may throw.
    typedef std::function<boost::optional<bool>(const Operation&)> Script;

    void addDirectory(const std::string& path);
    void removeDirectory(const std::string& path);
    /// Makes a file as the server sees it now, or so many seconds ago.
    void addFile(const std::string& name, long long ageSeconds = 0);
    void removeFileNow(const std::string& name);
    bool has(const std::string& name) const;
    std::vector<std::string> files() const;
    long long ageOf(const std::string& name) const;

    void setServerOffset(const boost::posix_time::time_duration& offset);
    void setHook(const Hook& hook);
    void setScript(const Script& script);

    std::vector<std::string> log() const;
    void clearLog();

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
    typedef std::map<std::string, long long> Files;

    typedef boost::optional<boost::posix_time::ptime> Deadline;

    /// Runs the hook, the script and the answer and completes the line,
    /// whatever they throw. The script's answer is no number and goes.
    long long record(const char* verb, const std::string& name, const std::function<long long()>& answer,
                     const std::string& walk = std::string());
    /// The same for a question of yes and no, which the script may answer.
    bool recordYesNo(const char* verb, const std::string& name, const Deadline& deadline,
                     const std::function<bool()>& answer);
    /// Begins its line in the log too.
    Operation nextOperation(const char* verb, const std::string& name, const Deadline& deadline,
                            const std::string& walk = std::string());
    /// Runs the hook, then the script.
    boost::optional<bool> scripted(const Operation& operation);
    void complete(const Operation& operation, const std::string& result);
    long long serverTime() const;
    void requireDirectoryOf(const std::string& name) const;
    std::vector<std::string> filesMatching(const std::string& pattern) const;
    std::vector<std::string> directoriesMatching(const std::string& pattern) const;

    mutable std::mutex m_mutex;
    Files m_files;
    std::map<std::string, bool> m_directories;
    boost::posix_time::time_duration m_serverOffset = boost::posix_time::time_duration(0, 0, 0);
    std::shared_ptr<Hook> m_hook = std::make_shared<Hook>();
    std::shared_ptr<Script> m_script = std::make_shared<Script>();
    std::vector<std::string> m_log;
};

}  // namespace test
}  // namespace zorvel
