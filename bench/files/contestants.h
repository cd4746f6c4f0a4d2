#pragma once

#include "bench/files/contest.h"

#include <string>
#include <vector>

namespace zorvel {
namespace bench {

/// Somebody who takes part in the rows whose work it has.
struct Contestant
{
    const char* name;
    Work walk;    ///< every entry's path and whether it is a directory: files and twice the directories
    Work size;    ///< the sum of all files' sizes
    Work match;   ///< the entries named "*.txt" of each of patternFolders(): their number
    Work remove;  ///< the tree at a path with all in it
    Work create;  ///< a directory with all its parents, of which 20 are missing
    Work keep;    ///< the same of one that exists
    bool isProcess = false;
};

/// Ours and whom this system has.
std::vector<Contestant> contestants();

Contestant zorvelItself();
Contestant standardFilesystem();

/// What a walker is given is looked at: nobody passes over an entry.
class Tally
{
public:
    void add(const char* path, std::size_t length, bool isDirectory)
    {
        m_entries += isDirectory ? 2 : 1;
        m_bytes += static_cast<unsigned char>(path[length - 1]) + length;
    }

    std::uint64_t entries() const;

private:
    std::uint64_t m_entries = 0;
    std::uint64_t m_bytes = 0;
};

/// The folders that "match" looks into, one after another.
const std::vector<std::string>& patternFolders();

/// Before the names of the rows, and the number of files that they are about:
/// under Wine fewer, for everybody alike.
struct Amounts
{
    const char* prefix;
    std::uint64_t looked;
    std::uint64_t removed;
    std::uint64_t removedLarge;  ///< 0: no such row
    int removals;
    int repetitions;
    int creations;  ///< per repetition
};
Amounts amounts(bool isQuick);

/// For the record: what takes part in which version, on which file system.
void describeContestants();

}  // namespace bench
}  // namespace zorvel
