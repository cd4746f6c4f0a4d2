#pragma once

#include "tests/faults/seam/scenario.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temporary_tree.h"

#include <zorvel/dirlock.h>

namespace zorvel {
namespace test {
namespace seam {

/// A run on the locks of one directory of a real file system.
class LockRun : public Run
{
protected:
    LockRun();

    const std::string& directory() const { return m_directory; }
    const boost::shared_ptr<zvAbstractFS>& fs() const { return m_fs; }
    zvDirectoryReadWriteLock readWriteLock() const { return zvDirectoryReadWriteLock(m_directory, m_fs); }

    /// Somebody else's lock file, refreshed so many seconds ago.
    void foreignFile(const std::string& name, long secondsAgo = 0) const;
    void removeForeignFile(const std::string& name) const;
    /// Removes it unless somebody has refreshed it, and so taken it over.
    void removeStaleFile(const std::string& name) const;
    bool has(const std::string& name) const;
    /// How many files have names that begin so.
    std::size_t countOf(const std::string& beginning) const;

    /// Nobody holds the directory or waits for it: no timer runs, and no file
    /// stays but what the fault itself has left. A minute later everybody can
    /// have it.
    void expectFree(const Faults& faults) const;

    /// What a newcomer gets on the healthy system.
    bool newcomerCanWrite() const;
    bool newcomerCanRead() const;
    bool newcomerCanHaveAll() const;

private:
    const fake_clock::Scope m_clock;
    const TemporaryTree m_tree;
    const std::string m_directory;
    const boost::shared_ptr<zvAbstractFS> m_fs;
};

}  // namespace seam
}  // namespace test
}  // namespace zorvel
