#include <zorvel/errors.h>

#include "tests/unit/dirlock/read_write_order.h"

#include <boost/make_shared.hpp>

// A read lock that is made of a lock file.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;

class AdoptedReader : public testing::Test
{
protected:
    boost::shared_ptr<zvLockFile> makeFile(const std::string& name = "D\\.deploy_read_lock.77")
    {
        const boost::shared_ptr<zvLockFile> file = boost::make_shared<zvLockFile>(name, seconds(1), m_scene.sharedFs());
        m_scene.fs().clearLog();
        return file;
    }

    ReadWriteScene m_scene;
};

TEST_F(AdoptedReader, HoldsFromTheStart)
{
    ReadLock reader(makeFile(), m_scene.sharedFs());
    EXPECT_TRUE(reader.isAcquired());
    EXPECT_FALSE(reader.tryAcquire(false));
    EXPECT_THAT(m_scene.operations(), IsEmpty());
    EXPECT_EQ(1u, fake_timer::running());
}

TEST_F(AdoptedReader, ReleaseRemovesTheFile)
{
    ReadLock reader(makeFile(), m_scene.sharedFs());
    EXPECT_TRUE(reader.release());
    EXPECT_FALSE(reader.isAcquired());
    EXPECT_FALSE(reader.release());
    EXPECT_THAT(m_scene.fs().log(), ElementsAre("remove D\\.deploy_read_lock.77 +1000000us -> true"));
    EXPECT_EQ(0u, fake_timer::running());
}

TEST_F(AdoptedReader, DestructionRemovesTheFile)
{
    {
        const ReadLock reader(makeFile(), m_scene.sharedFs());
    }
    EXPECT_THAT(m_scene.fs().files(), IsEmpty());
}

TEST_F(AdoptedReader, AFileThatSomebodyElseKeepsStays)
{
    boost::shared_ptr<zvLockFile> file = makeFile();
    ReadLock reader(file, m_scene.sharedFs());
    EXPECT_TRUE(reader.release());
    EXPECT_FALSE(reader.isAcquired());
    EXPECT_EQ(1u, m_scene.fs().files().size());
    file.reset();
    EXPECT_THAT(m_scene.fs().files(), IsEmpty());
}

TEST_F(AdoptedReader, AFileThatIsGoneIsAdoptedAllTheSame)
{
    const boost::shared_ptr<zvLockFile> file = makeFile();
    m_scene.fs().removeFileNow(file->getName());
    const ReadLock reader(file, m_scene.sharedFs());
    EXPECT_TRUE(reader.isAcquired());
}

TEST_F(AdoptedReader, TheDirectoryIsTheOneOfTheFile)
{
    m_scene.fs().addDirectory("C:\\data\\sub");
    ReadLock reader(makeFile("C:\\data\\sub\\anything"), m_scene.sharedFs());
    EXPECT_TRUE(reader.release());
    m_scene.fs().clearLog();
    EXPECT_TRUE(reader.tryAcquire(false));
    EXPECT_EQ("exists C:\\data\\sub/.deploy_lock.0 -> false", m_scene.fs().log().at(0));
    EXPECT_EQ("anyMatch C:\\data\\sub\\.deploy_write_lock -> false", m_scene.fs().log().at(4));
    EXPECT_EQ(0u, m_scene.fs().log().at(5).find("create C:\\data\\sub\\.deploy_read_lock."));
    m_scene.fs().addFile("C:\\data\\sub\\.deploy_write_lock", 40);
    EXPECT_TRUE(reader.release());
    EXPECT_TRUE(reader.tryAcquire(false));
    EXPECT_THAT(m_scene.fs().log(), testing::Contains("isDirectory C:\\data\\sub -> true"));
}

/// A bare name has no directory part; nothing is acquired in a directory
/// without a name.
TEST_F(AdoptedReader, AFileWithoutADirectoryCannotBeAcquiredAgain)
{
    m_scene.fs().addDirectory("");
    ReadLock reader(makeFile("bare"), m_scene.sharedFs());
    EXPECT_TRUE(reader.release());
    EXPECT_THROW(reader.tryAcquire(false), zvNoSuchDirectory);
}

TEST_F(AdoptedReader, NoFileIsRefused)
{
    EXPECT_THROW(ReadLock(boost::shared_ptr<zvLockFile>(), m_scene.sharedFs()), zvFileAccessError);
    EXPECT_THAT(m_scene.operations(), IsEmpty());
}

TEST_F(AdoptedReader, NoFileSystemIsRefused)
{
    const boost::shared_ptr<zvLockFile> file = makeFile();
    EXPECT_THROW(ReadLock(file, boost::shared_ptr<zvAbstractFS>()), zvFileAccessError);
    EXPECT_EQ(1u, m_scene.fs().files().size());
}

}  // namespace
