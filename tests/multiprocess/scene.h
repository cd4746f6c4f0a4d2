#pragma once

#include "tests/multiprocess/release_set.h"
#include "tests/support/temporary_tree.h"

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

    /// Who held, in order.
    std::vector<int> turns() const;

    const TemporaryTree& tree() const { return m_tree; }

private:
    TemporaryTree m_tree;
};

/// The largest number of turns that others took between two turns of one
/// process, or before its first.
int longestGap(const std::vector<int>& turns, int processes);

}  // namespace test
}  // namespace zorvel
