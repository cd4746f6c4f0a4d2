#include "examples/zvlock/lock_listing.h"

#include "examples/zvlock/lock_names.h"
#include "examples/zvlock/server_clock.h"

#include <zorvel/zorvel.h>

#include <algorithm>
#include <iomanip>

namespace zorvel {
namespace zvlock {

namespace {

const boost::posix_time::seconds patienceWithTheServer(5);

struct Found
{
    LockName name;
    std::string path;
    zvTime64 refreshed = 0;
};

std::string withoutDirectory(const std::string& path)
{
    return path.substr(path.find_last_of("\\/") + 1);
}

/// Every lock file, in order. The walk does not tell a directory that it
/// cannot list from an empty one, but it has to see the file of the clock.
std::vector<Found> find(zvAbstractFS& fs, const std::string& directory, const ServerClock& clock)
{
    std::vector<Found> found;
    bool clockSeen = false;
    auto look = [&](const char* path) {
        const std::string name = withoutDirectory(path);
        clockSeen = clockSeen || name == clock.fileName();
        if (const auto lockName = lockNameOf(name))
            found.push_back({*lockName, path});
    };
    const zvStringProcedureAdapter<decltype(look)> onFile(look);
    fs.findMatchingFilesAndDirs((directory + "/*").c_str(), onFile, zvIgnoreString(), 0, false);
    if (!clockSeen)
        throw zvFileAccessError(directory + " cannot be listed");
    const auto inOrder = [](const Found& one, const Found& other) { return comesBefore(one.name, other.name); };
    std::sort(found.begin(), found.end(), inOrder);
    return found;
}

/// Calls `question` for each; those that are gone meanwhile are dropped.
template <class Question>
void askEach(std::vector<Found>& files, Question question)
{
    const auto isGone = [&](Found& file) {
        try {
            question(file);
            return false;
        } catch (const zvFileNotFoundError&) {
            return true;
        }
    };
    files.erase(std::remove_if(files.begin(), files.end(), isGone), files.end());
}

}  // namespace

/// The server's time is read last: a file that is refreshed while this looks
/// would otherwise be from the future.
std::vector<LockEntry> lockEntriesOf(const std::string& directory)
{
    const boost::shared_ptr<zvAbstractFS> fs = zvGetDefaultFSImp();
    ServerClock clock(directory, fs);
    std::vector<Found> files = find(*fs, directory, clock);
    askEach(files, [&](Found& file) { file.refreshed = fs->getModificationTime(file.path.c_str()); });
    const zvTime64 now = clock.now();

    zvLockFileIsStale isStale(zvPathString_<zvMBCSSafeString>(directory), fs);
    const auto deadline = boost::posix_time::microsec_clock::local_time() + patienceWithTheServer;
    std::vector<LockEntry> entries;
    askEach(files, [&](const Found& file) {
        const bool stale = isStale(file.path.c_str(), zvDirectoryReadWriteLock::STALE_TIMEOUT_SEC, deadline);
        entries.push_back({file.name.kind, file.name.number, static_cast<long long>(now - file.refreshed), stale});
    });
    return entries;
}

void print(std::ostream& out, const std::vector<LockEntry>& entries)
{
    if (entries.empty()) {
        out << "no lock files\n";
        return;
    }
    std::size_t width = std::string("NUMBER").size();
    for (const LockEntry& entry : entries)
        width = std::max(width, entry.number.size());
    using Text = const std::string&;
    const auto line = [&](Text kind, Text number, Text age, Text state) {
        out << std::left << std::setw(9) << kind << "  " << std::right << std::setw(static_cast<int>(width)) << number;
        out << "  " << std::setw(8) << age << "  " << state << '\n';
    };
    line("KIND", "NUMBER", "AGE", "STATE");
    for (const LockEntry& entry : entries)
        line(entry.kind, entry.number, std::to_string(entry.age) + " s", entry.stale ? "stale" : "fresh");
}

}  // namespace zvlock
}  // namespace zorvel
