#include "tests/faults/mount/posix/mounted_folder.h"

#include <zorvel/dirlock.h>
#include <zorvel/fsutil.h>

#include <gtest/gtest.h>

// A client of a network file system goes on showing what it once read of a directory while the directory's time has not
// changed, and two changes in one tick of the server's clock leave the same time. Who decides by a look whether it may
// enter must not be shown that.

namespace {

using namespace zorvel::test;

class RememberedListing : public testing::Test
{
protected:
    std::string readers() const { return m_mounted.path() + "\\.deploy_read_lock.*"; }

    /// What every other search of the library, and every program, is shown.
    bool isShown(const std::string& pattern) const { return zvMatchingFileOrDirExists(pattern.c_str()); }

    const fault_mount::MountedFolder m_mounted{ZORVEL_REMEMBERING_MOUNT};
    const boost::shared_ptr<zvAbstractFS> m_fs = zvGetDefaultFSImp();
};

TEST_F(RememberedListing, AFileOfTheSameTickIsSeenByWhoAsksWhetherAnyMatches)
{
    ASSERT_FALSE(m_fs->anyMatch(readers().c_str()));
    m_mounted.makeInTheSameTick(".deploy_read_lock.1");
    EXPECT_FALSE(isShown(readers())) << "the kernel remembers nothing here, so this shows nothing";
    EXPECT_TRUE(m_fs->anyMatch(readers().c_str()));
}

TEST_F(RememberedListing, AFileThatIsGoneInTheSameTickIsNotSeenAnyMore)
{
    m_mounted.makeInTheSameTick(".deploy_read_lock.1");
    ASSERT_TRUE(isShown(readers()));
    m_mounted.removeInTheSameTick(".deploy_read_lock.1");
    EXPECT_TRUE(isShown(readers())) << "the kernel remembers nothing here, so this shows nothing";
    EXPECT_FALSE(m_fs->anyMatch(readers().c_str()));
}

}  // namespace
