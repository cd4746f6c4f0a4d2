#include <zorvel/dirlock.h>
#include <zorvel/errors.h>

#include "tests/support/temporary_tree.h"

#include <gmock/gmock.h>

#include <algorithm>

// Readers and writers on the real file system.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

class RealReadWrite : public testing::Test
{
protected:
    TemporaryTree m_tree;
    const zvDirectoryReadWriteLock m_both{m_tree.root(), zvGetDefaultFSImp()};
    ReadLock m_reader = m_both.getReadLock();
    WriteLock m_writer = m_both.getWriteLock();
};

TEST_F(RealReadWrite, AReaderHasAFileOfItsOwn)
{
    EXPECT_THAT(m_tree.names(), IsEmpty());
    ASSERT_TRUE(m_reader.tryAcquire(false));
    EXPECT_THAT(m_tree.names(), ElementsAre(StartsWith(".deploy_read_lock.")));
    EXPECT_EQ(4u, m_tree.content(m_tree.names().at(0)).size());
    EXPECT_FALSE(m_reader.tryAcquire(false));
    EXPECT_EQ(1u, m_tree.names().size());
    EXPECT_TRUE(m_reader.release());
    EXPECT_THAT(m_tree.names(), IsEmpty());
}

TEST_F(RealReadWrite, AWriterHasTheWritersFile)
{
    ASSERT_TRUE(m_writer.tryAcquire(false));
    EXPECT_THAT(m_tree.names(), ElementsAre(".deploy_write_lock"));
    EXPECT_EQ(4u, m_tree.content(".deploy_write_lock").size());
    EXPECT_FALSE(m_writer.tryAcquire(false));
    EXPECT_TRUE(m_writer.release());
    EXPECT_THAT(m_tree.names(), IsEmpty());
}

TEST_F(RealReadWrite, ADowngradeLeavesOneReadersFile)
{
    ASSERT_TRUE(m_writer.tryAcquire(false));
    ReadLock reader = m_writer.downgrade();
    EXPECT_THAT(m_tree.names(), ElementsAre(StartsWith(".deploy_read_lock.")));
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_FALSE(m_writer.isAcquired());
    EXPECT_TRUE(m_reader.tryAcquire(false));
    EXPECT_EQ(2u, m_tree.names().size());
    EXPECT_FALSE(m_writer.tryAcquire(false));
    EXPECT_TRUE(reader.release());
    EXPECT_TRUE(m_reader.release());
    EXPECT_THAT(m_tree.names(), IsEmpty());
}

TEST_F(RealReadWrite, ADowngradeOfWhatIsNotHeldMakesNothing)
{
    EXPECT_FALSE(m_writer.tryDowngrade().isAcquired());
    EXPECT_THAT(m_tree.names(), IsEmpty());
}

TEST_F(RealReadWrite, TheyExcludeEachOther)
{
    ASSERT_TRUE(m_reader.tryAcquire(false));
    ReadLock other = m_both.getReadLock();
    EXPECT_TRUE(other.tryAcquire(false));
    EXPECT_FALSE(m_writer.acquire(milliseconds(40), false));
    EXPECT_TRUE(m_reader.release());
    EXPECT_FALSE(m_writer.tryAcquire(false));
    EXPECT_TRUE(other.release());
    ASSERT_TRUE(m_writer.tryAcquire(false));
    EXPECT_FALSE(m_reader.acquire(milliseconds(40), false));
    EXPECT_FALSE(m_both.getWriteLock().tryAcquire(false));
    EXPECT_THAT(m_tree.names(), ElementsAre(".deploy_write_lock"));
}

TEST_F(RealReadWrite, AReaderClearsAStaleWriter)
{
    m_tree.file(".deploy_write_lock", "dead");
    m_tree.age(".deploy_write_lock", -40);
    EXPECT_TRUE(m_reader.tryAcquire(false));
    EXPECT_THAT(m_tree.names(), ElementsAre(StartsWith(".deploy_read_lock.")));
}

TEST_F(RealReadWrite, AWriterClearsStaleReadersAndWriters)
{
    for (const char* name : {".deploy_read_lock.1", ".deploy_read_lock.22", ".deploy_write_lock"}) {
        m_tree.file(name, "dead");
        m_tree.age(name, -40);
    }
    EXPECT_TRUE(m_writer.tryAcquire(false));
    EXPECT_THAT(m_tree.names(), ElementsAre(".deploy_write_lock"));
    EXPECT_NE("dead", m_tree.content(".deploy_write_lock"));
}

TEST_F(RealReadWrite, FreshFilesStay)
{
    m_tree.file(".deploy_read_lock.1", "held");
    m_tree.file(".deploy_read_lock.2", "dead");
    m_tree.age(".deploy_read_lock.1", -25);
    m_tree.age(".deploy_read_lock.2", -40);
    EXPECT_FALSE(m_writer.tryAcquire(false));
    EXPECT_THAT(m_tree.names(), ElementsAre(".deploy_read_lock.1"));
    EXPECT_EQ("held", m_tree.content(".deploy_read_lock.1"));
    m_tree.file(".deploy_write_lock", "held");
    m_tree.age(".deploy_write_lock", -25);
    EXPECT_FALSE(m_reader.tryAcquire(false));
    EXPECT_EQ("held", m_tree.content(".deploy_write_lock"));
}

TEST_F(RealReadWrite, OtherFilesAreLeftAlone)
{
    for (const char* name : {".deploy_write_lock.old", ".deploy_read_locks", "release.txt"}) {
        m_tree.file(name, "content");
        m_tree.age(name, -1000);
    }
    ASSERT_TRUE(m_writer.tryAcquire(false));
    ReadLock reader = m_writer.downgrade();
    EXPECT_TRUE(reader.release());
    EXPECT_THAT(m_tree.names(), ElementsAre(".deploy_read_locks", ".deploy_write_lock.old", "release.txt"));
    EXPECT_EQ("content", m_tree.content("release.txt"));
}

TEST_F(RealReadWrite, AMissingDirectoryIsThrown)
{
    const std::string directory = m_tree.path("missing");
    const zvDirectoryReadWriteLock both(directory, zvGetDefaultFSImp());
    ReadLock reader = both.getReadLock();
    WriteLock writer = both.getWriteLock();
    for (int i = 0; i < 2; ++i) {
        EXPECT_THROW(reader.acquire(seconds(1), false), zvNoSuchDirectory);
        EXPECT_THROW(writer.acquire(seconds(1), false), zvNoSuchDirectory);
    }
    EXPECT_FALSE(reader.isAcquired());
    EXPECT_FALSE(writer.release());
    m_tree.directory("missing");
    EXPECT_TRUE(reader.tryAcquire(false));
    EXPECT_TRUE(reader.release());
    EXPECT_TRUE(writer.tryAcquire(false));
}

TEST_F(RealReadWrite, AFileIsNoDirectory)
{
    m_tree.file("plain");
    const zvDirectoryReadWriteLock both(m_tree.path("plain"), zvGetDefaultFSImp());
    EXPECT_THROW(both.getReadLock().tryAcquire(false), zvNoSuchDirectory);
    EXPECT_THROW(both.getWriteLock().tryAcquire(false), zvNoSuchDirectory);
    EXPECT_THAT(m_tree.names(), ElementsAre("plain"));
}

TEST_F(RealReadWrite, DirectoriesThatCannotBeSearchedAreThrown)
{
    for (const std::string& name : {m_tree.path("a*"), m_tree.path(std::string(1100, 'd'))}) {
        const zvDirectoryReadWriteLock both(name, zvGetDefaultFSImp());
        EXPECT_THROW(both.getReadLock().tryAcquire(false), zvFileAccessError);
        EXPECT_THROW(both.getWriteLock().tryAcquire(false), zvFileAccessError);
    }
    for (const std::string& name : {std::string(), m_tree.root() + '\0' + "x"}) {
        const zvDirectoryReadWriteLock both(name, zvGetDefaultFSImp());
        EXPECT_THROW(both.getReadLock().tryAcquire(false), zvNoSuchDirectory);
        EXPECT_THROW(both.getWriteLock().tryAcquire(false), zvNoSuchDirectory);
    }
    EXPECT_THAT(m_tree.names(), IsEmpty());
}

TEST_F(RealReadWrite, SpellingsOfADirectoryMeetInIt)
{
    std::string slashes = m_tree.root() + "//";
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    ASSERT_TRUE(m_writer.tryAcquire(false));
    for (const std::string& spelling : {m_tree.root() + "\\", slashes}) {
        const zvDirectoryReadWriteLock both(spelling, zvGetDefaultFSImp());
        EXPECT_FALSE(both.getReadLock().tryAcquire(false)) << spelling;
        EXPECT_FALSE(both.getWriteLock().tryAcquire(false)) << spelling;
    }
    EXPECT_TRUE(m_writer.release());
    EXPECT_TRUE(zvDirectoryReadWriteLock(slashes, zvGetDefaultFSImp()).getWriteLock().tryAcquire(false));
}

TEST_F(RealReadWrite, ADirectoryThatGoesWhileItIsHeldIsNoErrorOfTheRelease)
{
    m_tree.directory("sub");
    const zvDirectoryReadWriteLock both(m_tree.path("sub"), zvGetDefaultFSImp());
    WriteLock writer = both.getWriteLock();
    ASSERT_TRUE(writer.tryAcquire(true));
    m_tree.removeDirectory("sub");
    EXPECT_THROW(writer.downgrade(), zvNoSuchDirectory);
    EXPECT_TRUE(writer.isAcquired());
    EXPECT_TRUE(writer.release());
    EXPECT_THROW(writer.tryAcquire(false), zvNoSuchDirectory);
}

/// Its second byte is a backslash where the code page has such characters, and
/// no separator: the files lie in it and not beside it.
TEST_F(RealReadWrite, ADirectoryOfTwoByteCharactersIsLocked)
{
    m_tree.directory("\x95\x5c");
    const zvDirectoryReadWriteLock both(m_tree.path("\x95\x5c"), zvGetDefaultFSImp());
    WriteLock writer = both.getWriteLock();
    ASSERT_TRUE(writer.tryAcquire(false));
    EXPECT_THAT(m_tree.names("\x95\x5c"), ElementsAre(".deploy_write_lock"));
    EXPECT_FALSE(both.getReadLock().tryAcquire(false));
    ReadLock reader = writer.downgrade();
    EXPECT_THAT(m_tree.names("\x95\x5c"), ElementsAre(StartsWith(".deploy_read_lock.")));
    EXPECT_FALSE(both.getWriteLock().tryAcquire(false));
    EXPECT_TRUE(reader.release());
    // The directory of an adopted file is taken from its name.
    EXPECT_TRUE(reader.tryAcquire(false));
    EXPECT_THAT(m_tree.names("\x95\x5c"), ElementsAre(StartsWith(".deploy_read_lock.")));
    EXPECT_TRUE(reader.release());
    EXPECT_EQ(1u, m_tree.names().size());
}

TEST_F(RealReadWrite, StaleFilesInADirectoryOfTwoByteCharactersAreCleared)
{
    m_tree.directory("\x95\x5c");
    for (const char* name : {"\x95\x5c\\.deploy_read_lock.7", "\x95\x5c\\.deploy_write_lock"}) {
        m_tree.file(name, "dead");
        m_tree.age(name, -40);
    }
    const zvDirectoryReadWriteLock both(m_tree.path("\x95\x5c"), zvGetDefaultFSImp());
    WriteLock writer = both.getWriteLock();
    ASSERT_TRUE(writer.tryAcquire(false));
    EXPECT_THAT(m_tree.names("\x95\x5c"), ElementsAre(".deploy_write_lock"));
}

}  // namespace
