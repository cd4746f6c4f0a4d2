#include "tests/faults/seam/lock_run.h"

#include <boost/date_time/posix_time/posix_time.hpp>

#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>

namespace zorvel {
namespace test {
namespace seam {

namespace {

const char directoryName[] = "locked";
const boost::posix_time::seconds patience(5);

/// Faults after which a file stays that nobody can know to be one's own: its
/// removal failed, it was made although its making failed, or memory ran out.
/// It goes stale.
bool leavesAFile(const Fault& fault)
{
    if (fault.answer.effect == seam_faults::Effect::noMemory)
        return true;
    const bool isLost = fault.answer.effect == seam_faults::Effect::done;
    return fault.function == seam_faults::removeFile ? !isLost : fault.function == seam_faults::openFile && isLost;
}

}  // namespace

LockRun::LockRun() : m_directory(m_tree.path(directoryName)), m_fs(zvGetDefaultFSImp())
{
    m_tree.directory(directoryName);
    // Files have the system's times. Far from the clock's they would be asked for again and again.
    fake_clock::set(boost::posix_time::microsec_clock::universal_time());
}

void LockRun::foreignFile(const std::string& name, long secondsAgo) const
{
    const std::string path = std::string(directoryName) + "\\" + name;
    m_tree.file(path, "foreign");
    if (secondsAgo != 0)
        m_tree.age(path, -secondsAgo);
}

void LockRun::removeForeignFile(const std::string& name) const
{
    EXPECT_TRUE(has(name)) << "the file of another holder is gone";
    EXPECT_EQ(0, m_fs->removeEntry((m_directory + "\\" + name).c_str()));
}

void LockRun::removeStaleFile(const std::string& name) const
{
    const std::string path = std::string(directoryName) + "\\" + name;
    if (m_tree.exists(path) && m_tree.modificationTime(path) < std::time(nullptr) - 30) {
        EXPECT_EQ(0, m_fs->removeEntry((m_directory + "\\" + name).c_str()));
    }
}

bool LockRun::has(const std::string& name) const
{
    return m_tree.exists(std::string(directoryName) + "\\" + name);
}

std::size_t LockRun::countOf(const std::string& beginning) const
{
    const std::vector<std::string> names = m_tree.names(directoryName);
    return static_cast<std::size_t>(std::count_if(names.begin(), names.end(), [&](const std::string& name) {
        return name.compare(0, beginning.size(), beginning) == 0;
    }));
}

void LockRun::expectFree(const Faults& faults) const
{
    EXPECT_EQ(0u, seam_faults::runningTimers());
    if (std::none_of(faults.begin(), faults.end(), leavesAFile)) {
        EXPECT_THAT(m_tree.names(directoryName), testing::IsEmpty());
    }
    for (const std::string& name : m_tree.names(directoryName))
        m_tree.age(std::string(directoryName) + "\\" + name, -60);
    EXPECT_TRUE(newcomerCanHaveAll()) << "after a minute";
    EXPECT_EQ(0u, countOf(".deploy_lock.0"));
    if (countOf(".deploy_write_lock") + countOf(".deploy_read_lock.") != 0) {
        EXPECT_TRUE(newcomerCanRead()) << "after a minute";
        EXPECT_TRUE(newcomerCanWrite()) << "after a minute";
        EXPECT_EQ(0u, countOf(".deploy_write_lock") + countOf(".deploy_read_lock."));
    }
    EXPECT_EQ(0u, seam_faults::runningTimers());
}

bool LockRun::newcomerCanWrite() const
{
    return readWriteLock().getWriteLock().acquire(patience, true);
}

bool LockRun::newcomerCanRead() const
{
    return readWriteLock().getReadLock().acquire(patience, true);
}

bool LockRun::newcomerCanHaveAll() const
{
    return zvDirectoryExclusiveLock(m_directory, "newcomer", m_fs).acquire(patience, true);
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
