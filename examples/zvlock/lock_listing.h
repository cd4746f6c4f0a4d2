#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zorvel {
namespace zvlock {

/// One lock file of a directory.
struct LockEntry
{
    std::string kind;    ///< "exclusive", "queued", "writer" or "reader"
    std::string number;  ///< level or reader's number; "-" for a writer
    long long age = 0;   ///< seconds since its last refresh, by the clock of the file server
    bool stale = false;  ///< whether a lock would judge it so
};

/// The lock files of a directory: the exclusive holder, its queue, the writer,
/// the readers. Files that vanish meanwhile are left out. Makes and removes a
/// file in the directory, whose time is the server's. Throws members of the
/// family of zvFileBasedLockError, for a directory that cannot be listed too.
std::vector<LockEntry> lockEntriesOf(const std::string& directory);

/// An aligned table with a header, or one line when there are none.
void print(std::ostream& out, const std::vector<LockEntry>& entries);

}  // namespace zvlock
}  // namespace zorvel
