#include "bench/files/peers_posix.h"

#include <fnmatch.h>
#include <fts.h>
#include <sys/stat.h>

namespace zorvel {
namespace bench {

namespace {

/// A walk that gives each entry once to a function.
template <class Take>
void eachEntry(const std::string& path, int options, Take take)
{
    std::string root = path;
    char* const paths[] = {&root[0], nullptr};
    FTS* const walk = fts_open(paths, FTS_PHYSICAL | options, nullptr);
    while (FTSENT* const entry = walk ? fts_read(walk) : nullptr) {
        if (entry->fts_info != FTS_DP && entry->fts_level > 0)
            take(*entry);
    }
    if (walk)
        fts_close(walk);
}

/// Where nobody asks for more than the type, it is told not to look.
const int namesOnly = FTS_NOSTAT | FTS_NOCHDIR;

std::uint64_t walk(const std::string& path)
{
    Tally tally;
    eachEntry(path, namesOnly,
              [&](const FTSENT& entry) { tally.add(entry.fts_path, entry.fts_pathlen, entry.fts_info == FTS_D); });
    return tally.entries();
}

/// It looks faster from within the folder.
std::uint64_t size(const std::string& path)
{
    std::uint64_t total = 0;
    eachEntry(path, 0, [&](const FTSENT& entry) {
        total += entry.fts_info == FTS_F ? static_cast<std::uint64_t>(entry.fts_statp->st_size) : 0;
    });
    return total;
}

std::uint64_t match(const std::string& path)
{
    Tally tally;
    eachEntry(path, namesOnly, [&](const FTSENT& entry) {
        if (fnmatch("*.txt", entry.fts_name, 0) == 0)
            tally.add(entry.fts_path, entry.fts_pathlen, entry.fts_info == FTS_D);
    });
    return tally.entries();
}

}  // namespace

Contestant ftsItself()
{
    return {"fts", &walk, &size, &match, nullptr, nullptr, nullptr};
}

}  // namespace bench
}  // namespace zorvel
