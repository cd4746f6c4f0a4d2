#pragma once

#include "tests/multiprocess/release_set.h"
#include "tests/support/temporary_tree.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A directory that contenders take turns in, as a test looks at it.
class Scene
{
public:
    /// With '/', which every program on every system understands.
    std::string directory() const;

    /// A release of generation 0, by nobody. This and release() open files in a
    /// way that no child inherits: another thread may be starting one, which
    /// would hold them open.
    void writeFirstRelease() const;
    Look release() const;

    /// Lock files that are there now.
    std::vector<std::string> lockFiles() const;

    /// Makes every lock file stale that nobody has refreshed for three
    /// seconds, three times the interval at which a live owner does, and takes
    /// the mark of a holder away that died inside. Call it when nobody has
    /// made progress for that long: then no live process is inside. Returns
    /// the number of files aged.
    int ageAbandoned() const;

    /// Makes every lock file stale that nobody has refreshed since `killed`
    /// (seconds since 1970-01-01 UTC, three or more ago), and takes away first
    /// what that worker showed of itself inside. The others may go on
    /// meanwhile. Returns the names of the files aged.
    std::vector<std::string> ageTracesOf(int worker, long long killed) const;

    /// Whether a file was made stale by one of these and not touched since.
    bool aged(const std::string& name) const;

    /// Files by which clocks were compared: "." and digits.
    int calibrations() const;

    typedef std::filesystem::file_time_type Stamp;
    /// Lock files with their times.
    std::map<std::string, Stamp> stamps() const;
    /// Those that nobody has touched for a moment and that are not aged: a
    /// file that is made anew under the name of one of them has another time.
    std::map<std::string, Stamp> quietLockFiles() const;
    /// Makes such a file stale; false when it is not that file any more.
    bool ageQuiet(const std::string& name, Stamp stamp) const;

    /// Lock files that were touched after `since`.
    std::vector<std::string> lockFilesTouchedAfter(long long since) const;

    /// Who held, in order.
    std::vector<int> turns() const;

    const TemporaryTree& tree() const { return m_tree; }

private:
    /// Makes a file stale; false when it has gone.
    bool makeStale(const std::string& name) const;
    /// Of a file that has gone: the oldest there is.
    Stamp stampOf(const std::string& name) const;
    bool touchedAfter(const std::string& name, long long since) const;

    TemporaryTree m_tree;
};

/// The largest number of turns that others took between two turns of one
/// process, or before its first.
int longestGap(const std::vector<int>& turns, int processes);

}  // namespace test
}  // namespace zorvel
