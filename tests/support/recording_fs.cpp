#include "tests/support/recording_fs.h"

#include "platform/clock.h"

#include <zorvel/errors.h>

#include <boost/date_time/posix_time/posix_time.hpp>

namespace zorvel {
namespace test {

namespace {

using boost::posix_time::ptime;
using boost::posix_time::time_duration;

const ptime epoch(boost::gregorian::date(1970, 1, 1));

std::string microseconds(const time_duration& offset)
{
    const long long count = offset.total_microseconds();
    if (count == 0)
        return "now";
    return (count > 0 ? "+" : "") + std::to_string(count) + "us";
}

std::string directoryOf(const std::string& name)
{
    const std::size_t end = name.find_last_of("/\\");
    return end == std::string::npos ? std::string() : name.substr(0, end);
}

bool matches(const std::string& pattern, const std::string& name)
{
    if (pattern.empty() || pattern.back() != '*')
        return name == pattern;
    const std::size_t length = pattern.size() - 1;
    return name.size() >= length && name.compare(0, length, pattern, 0, length) == 0;
}

/// The word for the exception that is being handled.
std::string currentException()
{
    try {
        throw;
    } catch (const zvNoSuchDirectory&) {
        return "no such directory";
    } catch (const zvPermissionDenied&) {
        return "permission denied";
    } catch (const zvFileAccessError&) {
        return "file access error";
    } catch (const zvFileNotFoundError&) {
        return "file not found";
    } catch (...) {
        return "another exception";
    }
}

}  // namespace

std::string offsetFromNow(const ptime& deadline)
{
    if (deadline.is_not_a_date_time())
        return "nadt";
    if (deadline.is_pos_infinity())
        return "+inf";
    if (deadline.is_neg_infinity())
        return "-inf";
    return microseconds(deadline - platform::localTime());
}

std::string Operation::text() const
{
    return verb + ' ' + name + (walk.empty() ? walk : ' ' + walk) +
           (deadline ? ' ' + offsetFromNow(*deadline) : std::string());
}

void RecordingFs::addDirectory(const std::string& path)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_directories[path] = true;
}

void RecordingFs::removeDirectory(const std::string& path)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_directories.erase(path);
}

void RecordingFs::addFile(const std::string& name, long long ageSeconds)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_files[name] = serverTime() - ageSeconds;
}

void RecordingFs::removeFileNow(const std::string& name)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_files.erase(name);
}

bool RecordingFs::has(const std::string& name) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_files.count(name) > 0;
}

std::vector<std::string> RecordingFs::files() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<std::string> names;
    for (const Files::value_type& file : m_files)
        names.push_back(file.first);
    return names;
}

long long RecordingFs::ageOf(const std::string& name) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return serverTime() - m_files.at(name);
}

void RecordingFs::setServerOffset(const time_duration& offset)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_serverOffset = offset;
}

void RecordingFs::setHook(const Hook& hook)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_hook = std::make_shared<Hook>(hook);
}

void RecordingFs::setScript(const Script& script)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_script = std::make_shared<Script>(script);
}

std::vector<std::string> RecordingFs::log() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_log;
}

void RecordingFs::clearLog()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_log.clear();
}

/// The mutex is held by the caller.
long long RecordingFs::serverTime() const
{
    const time_duration sinceEpoch = platform::universalTime() + m_serverOffset - epoch;
    return sinceEpoch.total_seconds();
}

/// The mutex is held by the caller.
void RecordingFs::requireDirectoryOf(const std::string& name) const
{
    if (m_directories.count(directoryOf(name)) == 0)
        throw zvNoSuchDirectory(name);
}

/// The mutex is held by the caller.
std::vector<std::string> RecordingFs::filesMatching(const std::string& pattern) const
{
    std::vector<std::string> names;
    for (const Files::value_type& file : m_files)
        if (matches(pattern, file.first))
            names.push_back(file.first);
    return names;
}

/// The mutex is held by the caller.
std::vector<std::string> RecordingFs::directoriesMatching(const std::string& pattern) const
{
    std::vector<std::string> names;
    for (const std::map<std::string, bool>::value_type& directory : m_directories)
        if (matches(pattern, directory.first))
            names.push_back(directory.first);
    return names;
}

Operation RecordingFs::nextOperation(const char* verb, const std::string& name, const Deadline& deadline,
                                     const std::string& walk)
{
    const Operation operation{0, verb, name, deadline, walk};
    const std::string text = operation.text();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_log.push_back(text);
    return Operation{m_log.size(), verb, name, deadline, walk};
}

boost::optional<bool> RecordingFs::scripted(const Operation& operation)
{
    std::shared_ptr<Hook> hook;
    std::shared_ptr<Script> script;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        hook = m_hook;
        script = m_script;
    }
    if (*hook)
        (*hook)(operation);
    return *script ? (*script)(operation) : boost::none;
}

/// A line that clearLog() took away stays away.
void RecordingFs::complete(const Operation& operation, const std::string& result)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (operation.number <= m_log.size())
        m_log[operation.number - 1] += " -> " + result;
}

long long RecordingFs::record(const char* verb, const std::string& name, const std::function<long long()>& answer,
                              const std::string& walk)
{
    const Operation operation = nextOperation(verb, name, boost::none, walk);
    try {
        scripted(operation);  // may throw; a number has no script
        const long long result = answer();
        complete(operation, std::to_string(result));
        return result;
    } catch (...) {
        complete(operation, currentException());
        throw;
    }
}

bool RecordingFs::recordYesNo(const char* verb, const std::string& name, const Deadline& deadline,
                              const std::function<bool()>& answer)
{
    const Operation operation = nextOperation(verb, name, deadline);
    try {
        const boost::optional<bool> given = scripted(operation);
        const bool result = given ? *given : answer();
        complete(operation, result ? "true" : "false");
        return result;
    } catch (...) {
        complete(operation, currentException());
        throw;
    }
}

bool RecordingFs::isDirectory(const char* path)
{
    return recordYesNo("isDirectory", path, boost::none, [&] {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_directories.count(path) > 0;
    });
}

bool RecordingFs::fileExists(const char* name)
{
    return recordYesNo("exists", name, boost::none, [&] {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_files.count(name) > 0)
            return true;
        requireDirectoryOf(name);
        return false;
    });
}

bool RecordingFs::createFileExclusive(const char* name)
{
    return recordYesNo("create", name, boost::none, [&] {
        const std::lock_guard<std::mutex> lock(m_mutex);
        requireDirectoryOf(name);
        return m_files.insert(Files::value_type(name, serverTime())).second;
    });
}

bool RecordingFs::removeFileUntil(const std::string& name, const ptime& deadline)
{
    return recordYesNo("remove", name, deadline, [&] {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_files.erase(name) > 0;
    });
}

bool RecordingFs::refreshLockFileUntil(const std::string& name, const ptime& deadline)
{
    return recordYesNo("refresh", name, deadline, [&] {
        const std::lock_guard<std::mutex> lock(m_mutex);
        requireDirectoryOf(name);
        m_files[name] = serverTime();
        return true;
    });
}

zvTime64 RecordingFs::getModificationTime(const char* name)
{
    return record("mtime", name, [&] {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const Files::const_iterator file = m_files.find(name);
        if (file == m_files.end())
            throw zvFileNotFoundError(name);
        return file->second;
    });
}

bool RecordingFs::anyMatch(const char* pattern)
{
    return recordYesNo("anyMatch", pattern, boost::none, [&] {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return !filesMatching(pattern).empty() || !directoriesMatching(pattern).empty();
    });
}

int RecordingFs::findMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& onFile,
                                          const zvStringProcedure& onDir, int depth, bool stopAtFirst)
{
    const auto answer = [&] {
        std::vector<std::string> files;
        std::vector<std::string> directories;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            files = filesMatching(pattern);
            directories = directoriesMatching(pattern);
        }
        for (const std::string& file : files)
            onFile(file.c_str());
        for (const std::string& directory : directories)
            onDir(directory.c_str());
        return static_cast<long long>(files.size() + directories.size());
    };
    const std::string walk = std::to_string(depth) + (stopAtFirst ? " true" : " false");
    return static_cast<int>(record("findMatchingFilesAndDirs", pattern, answer, walk));
}

// No lock asks for the rest: they are written down and fail.

bool RecordingFs::mkdirP(const char* path)
{
    return recordYesNo("mkdirP", path, boost::none, [] { return false; });
}

int RecordingFs::removeEntry(const char* name)
{
    return static_cast<int>(record("removeEntry", name, [] { return -1; }));
}

bool RecordingFs::removeRF(const char* path)
{
    return recordYesNo("removeRF", path, boost::none, [] { return false; });
}

unsigned short RecordingFs::disableWritePermission(const char* path)
{
    return static_cast<unsigned short>(record("disableWritePermission", path, [] { return 0; }));
}

unsigned short RecordingFs::enableWritePermission(const char* path)
{
    return static_cast<unsigned short>(record("enableWritePermission", path, [] { return 0; }));
}

}  // namespace test
}  // namespace zorvel
