#include <zorvel/errors.h>

#include "tests/support/fake_timer.h"
#include "tests/unit/dirlock/scene.h"

#include <gmock/gmock.h>

#include <type_traits>

// Holding, counting, releasing.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class Release : public testing::Test
{
protected:
    Scene m_scene;
    zvDirectoryExclusiveLock& m_lock = m_scene.lock();
};

TEST_F(Release, ConstructionTouchesNothing)
{
    EXPECT_THAT(m_scene.operations(), IsEmpty());
    EXPECT_FALSE(m_lock.isAcquired());
}

TEST_F(Release, OfWhatIsNotHeldAnswersFalse)
{
    EXPECT_FALSE(m_lock.release());
    EXPECT_FALSE(m_lock.release(seconds(1)));
    EXPECT_THAT(m_scene.operations(), IsEmpty());
}

TEST_F(Release, EndsTheRefreshAndRemovesTheFile)
{
    ASSERT_TRUE(m_lock.tryAcquire(false));
    m_scene.fs().clearLog();
    EXPECT_TRUE(m_lock.release());
    EXPECT_THAT(m_scene.operations(), ElementsAre("remove #0 +1000000us -> true"));
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_FALSE(m_lock.isAcquired());
    EXPECT_THAT(m_scene.fs().files(), IsEmpty());
    EXPECT_FALSE(m_lock.release());
}

TEST_F(Release, TheLastOneOfManyFreesTheDirectory)
{
    ASSERT_TRUE(m_lock.tryAcquire(false));
    m_scene.fs().clearLog();
    EXPECT_TRUE(m_lock.acquire(false));
    EXPECT_TRUE(m_lock.acquire(seconds(0), true));
    EXPECT_TRUE(m_lock.release());
    EXPECT_TRUE(m_lock.isAcquired());
    EXPECT_TRUE(m_lock.release(seconds(1)));
    EXPECT_TRUE(m_lock.isAcquired());
    EXPECT_THAT(m_scene.operations(), IsEmpty());
    EXPECT_TRUE(m_lock.release());
    EXPECT_FALSE(m_lock.isAcquired());
    EXPECT_FALSE(m_scene.isTaken(0));
}

TEST_F(Release, AHeldLockIsNotQueuedForThoughItsFileIsGone)
{
    ASSERT_TRUE(m_lock.tryAcquire(false));
    m_scene.free(0);
    m_scene.fs().clearLog();
    EXPECT_TRUE(m_lock.tryAcquire(false));
    EXPECT_THAT(m_scene.operations(), IsEmpty());
    EXPECT_TRUE(m_lock.release());
    EXPECT_TRUE(m_lock.release());
}

TEST_F(Release, AFileThatCannotBeRemovedIsNobodysError)
{
    ASSERT_TRUE(m_lock.tryAcquire(false));
    m_scene.before("remove #0", 1, [] { throw zvPermissionDenied("boom"); });
    EXPECT_TRUE(m_lock.release());
    EXPECT_FALSE(m_lock.isAcquired());
    EXPECT_EQ(0u, fake_timer::running());
}

TEST_F(Release, TheDirectoryMayBeTakenAgain)
{
    for (int i = 0; i < 50; ++i) {
        ASSERT_TRUE(m_lock.tryAcquire(i % 2 == 0));
        ASSERT_TRUE(m_lock.release());
    }
    EXPECT_THAT(m_scene.fs().files(), IsEmpty());
    EXPECT_EQ(0u, fake_timer::running());
}

TEST_F(Release, ALockIsRefreshedEverySecondUnlessItIsNotWanted)
{
    ASSERT_TRUE(m_lock.tryAcquire(false));
    EXPECT_EQ(1u, fake_timer::running());
    EXPECT_EQ(seconds(1), fake_timer::lastInterval());
    EXPECT_TRUE(fake_timer::lastRepeats());
    ASSERT_TRUE(m_lock.release());
    ASSERT_TRUE(m_lock.tryAcquire(true));
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_EQ(1u, fake_timer::set());
    ASSERT_TRUE(m_lock.release());
    EXPECT_FALSE(m_scene.isTaken(0));
}

TEST_F(Release, TheRefreshKeepsTheFileFresh)
{
    ASSERT_TRUE(m_lock.tryAcquire(false));
    fake_clock::advance(seconds(20));
    fake_timer::fire();
    EXPECT_EQ(0, m_scene.fs().ageOf(m_scene.nameOf(0)));
    EXPECT_EQ("refresh #0 +1000000us -> true", m_scene.operations().back());
}

TEST_F(Release, AnUnrefreshedLockMayBeTakenOverAfterThirtySeconds)
{
    zvDirectoryExclusiveLock other("D", "other", m_scene.sharedFs());
    ASSERT_TRUE(m_lock.tryAcquire(true));
    EXPECT_FALSE(other.acquire(boost::posix_time::milliseconds(50), false));
    fake_clock::advance(seconds(32));
    EXPECT_TRUE(other.acquire(boost::posix_time::milliseconds(50), false));
    EXPECT_TRUE(other.isAcquired());
}

TEST_F(Release, DestructionFreesTheDirectory)
{
    ASSERT_TRUE(m_lock.tryAcquire(false));
    ASSERT_TRUE(m_lock.tryAcquire(false));
    m_scene.fs().clearLog();
    m_scene.dropLock();
    EXPECT_THAT(m_scene.operations(), ElementsAre("remove #0 +1000000us -> true"));
    EXPECT_EQ(0u, fake_timer::running());
}

TEST_F(Release, DestructionOfWhatIsNotHeldTouchesNothing)
{
    m_scene.take(0);
    EXPECT_FALSE(m_lock.tryAcquire(false));
    m_scene.fs().clearLog();
    m_scene.dropLock();
    EXPECT_THAT(m_scene.operations(), IsEmpty());
}

TEST_F(Release, TwoObjectsExcludeEachOther)
{
    zvDirectoryExclusiveLock other("D", "other", m_scene.sharedFs());
    ASSERT_TRUE(m_lock.tryAcquire(false));
    EXPECT_FALSE(other.tryAcquire(false));
    EXPECT_FALSE(other.release());
    EXPECT_TRUE(m_lock.release());
    EXPECT_TRUE(other.tryAcquire(false));
    EXPECT_FALSE(m_lock.tryAcquire(false));
}

TEST_F(Release, AnEmptyFileSystemIsRefused)
{
    const boost::shared_ptr<zvAbstractFS> none;
    EXPECT_THROW(zvDirectoryExclusiveLock("D", "L", none), zvFileAccessError);
}

TEST_F(Release, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible<zvDirectoryExclusiveLock>::value);
    EXPECT_FALSE(std::is_copy_assignable<zvDirectoryExclusiveLock>::value);
}

}  // namespace
