#include <zorvel/errors.h>

#include "tests/unit/dirlock/read_write_order.h"

#include <boost/make_shared.hpp>

#include <memory>
#include <type_traits>

// Handles: copies share one hold, and the last one to go ends it. Both kinds
// alike.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

ReadLock made(const zvDirectoryReadWriteLock& both, const ReadLock*)
{
    return both.getReadLock();
}

WriteLock made(const zvDirectoryReadWriteLock& both, const WriteLock*)
{
    return both.getWriteLock();
}

template <class Lock>
class ReadWriteHandles : public testing::Test
{
protected:
    Lock make() const { return made(m_scene.both(), static_cast<const Lock*>(nullptr)); }

    std::vector<std::string> files() const { return m_scene.fs().files(); }

    mutable ReadWriteScene m_scene;
};

typedef testing::Types<ReadLock, WriteLock> Kinds;
TYPED_TEST_SUITE(ReadWriteHandles, Kinds, );  // the comma is for compilers that want an argument for "..."

TYPED_TEST(ReadWriteHandles, MakingOneTouchesNothing)
{
    const TypeParam lock = this->make();
    EXPECT_FALSE(lock.isAcquired());
    EXPECT_THAT(this->m_scene.operations(), IsEmpty());
}

TYPED_TEST(ReadWriteHandles, ReleaseOfWhatIsNotHeldAnswersFalse)
{
    TypeParam lock = this->make();
    EXPECT_FALSE(lock.release());
    EXPECT_FALSE(lock.release(seconds(1)));
    EXPECT_THAT(this->m_scene.operations(), IsEmpty());
}

TYPED_TEST(ReadWriteHandles, EachOneMadeIsALockOfItsOwn)
{
    TypeParam one = this->make();
    TypeParam other = this->make();
    ASSERT_TRUE(one.tryAcquire(false));
    EXPECT_FALSE(other.isAcquired());
    EXPECT_FALSE(other.release());
    EXPECT_TRUE(one.isAcquired());
}

TYPED_TEST(ReadWriteHandles, CopiesShareOneHold)
{
    TypeParam lock = this->make();
    TypeParam copy = lock;
    ASSERT_TRUE(lock.tryAcquire(false));
    EXPECT_TRUE(copy.isAcquired());
    EXPECT_FALSE(copy.tryAcquire(false));
    EXPECT_EQ(1u, this->files().size());
    EXPECT_TRUE(copy.release());
    EXPECT_FALSE(lock.isAcquired());
    EXPECT_FALSE(lock.release());
    EXPECT_THAT(this->files(), IsEmpty());
}

TYPED_TEST(ReadWriteHandles, ACopyOfAHeldOneHolds)
{
    TypeParam lock = this->make();
    ASSERT_TRUE(lock.tryAcquire(false));
    TypeParam copy(lock);
    EXPECT_TRUE(lock.release());
    EXPECT_FALSE(copy.isAcquired());
    EXPECT_TRUE(copy.tryAcquire(false));
    EXPECT_TRUE(lock.isAcquired());
}

TYPED_TEST(ReadWriteHandles, TheLastCopyToGoEndsTheHold)
{
    std::unique_ptr<TypeParam> lock(new TypeParam(this->make()));
    ASSERT_TRUE(lock->tryAcquire(false));
    std::unique_ptr<TypeParam> copy(new TypeParam(*lock));
    this->m_scene.fs().clearLog();
    lock.reset();
    EXPECT_TRUE(copy->isAcquired());
    EXPECT_THAT(this->m_scene.operations(), IsEmpty());
    copy.reset();
    EXPECT_EQ(1u, this->m_scene.countOf("remove "));
    EXPECT_EQ(1u, this->m_scene.operations().size());
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_THAT(this->files(), IsEmpty());
}

TYPED_TEST(ReadWriteHandles, DestructionOfWhatIsNotHeldTouchesNothing)
{
    {
        const TypeParam lock = this->make();
    }
    EXPECT_THAT(this->m_scene.operations(), IsEmpty());
}

TYPED_TEST(ReadWriteHandles, AssignmentSharesTheOther)
{
    TypeParam lock = this->make();
    TypeParam other = this->make();
    ASSERT_TRUE(other.tryAcquire(false));
    lock = other;
    EXPECT_TRUE(lock.isAcquired());
    EXPECT_TRUE(lock.release());
    EXPECT_FALSE(other.isAcquired());
}

TYPED_TEST(ReadWriteHandles, AssignmentDropsTheOldHoldOfTheLastCopy)
{
    TypeParam lock = this->make();
    ASSERT_TRUE(lock.tryAcquire(false));
    lock = this->make();
    EXPECT_FALSE(lock.isAcquired());
    EXPECT_THAT(this->files(), IsEmpty());
    EXPECT_EQ(0u, fake_timer::running());
}

TYPED_TEST(ReadWriteHandles, AssignmentKeepsTheHoldOfOtherCopies)
{
    TypeParam lock = this->make();
    ASSERT_TRUE(lock.tryAcquire(false));
    const TypeParam copy = lock;
    lock = this->make();
    EXPECT_FALSE(lock.isAcquired());
    EXPECT_TRUE(copy.isAcquired());
    EXPECT_EQ(1u, this->files().size());
}

TYPED_TEST(ReadWriteHandles, AssignmentToItselfKeepsTheHold)
{
    TypeParam lock = this->make();
    ASSERT_TRUE(lock.tryAcquire(false));
    const TypeParam& same = lock;
    lock = same;
    EXPECT_TRUE(lock.isAcquired());
    EXPECT_EQ(1u, this->files().size());
}

TYPED_TEST(ReadWriteHandles, MayBeAcquiredAgainAndAgain)
{
    TypeParam lock = this->make();
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(lock.tryAcquire(i % 2 == 0));
        ASSERT_TRUE(lock.release(seconds(1)));
    }
    EXPECT_THAT(this->files(), IsEmpty());
    EXPECT_EQ(0u, fake_timer::running());
}

TYPED_TEST(ReadWriteHandles, AHeldOneIsNotAcquiredThoughItsFileIsGone)
{
    TypeParam lock = this->make();
    ASSERT_TRUE(lock.tryAcquire(false));
    for (const std::string& file : this->files())
        this->m_scene.fs().removeFileNow(file);
    this->m_scene.fs().clearLog();
    EXPECT_FALSE(lock.tryAcquire(false));
    EXPECT_TRUE(lock.isAcquired());
    EXPECT_THAT(this->m_scene.operations(), IsEmpty());
    EXPECT_TRUE(lock.release());
}

TYPED_TEST(ReadWriteHandles, AFileThatCannotBeRemovedIsNobodysError)
{
    TypeParam lock = this->make();
    ASSERT_TRUE(lock.tryAcquire(false));
    failByPlan(this->m_scene.fs(), FailurePlan(1, Persistence::forEver, Failure::permissionDenied));
    EXPECT_TRUE(lock.release());
    EXPECT_FALSE(lock.isAcquired());
    EXPECT_EQ(0u, fake_timer::running());
}

TYPED_TEST(ReadWriteHandles, OutlivesWhatItWasMadeBy)
{
    const boost::shared_ptr<RecordingFs> fs = this->m_scene.sharedFs();
    TypeParam lock = made(zvDirectoryReadWriteLock("D", fs), static_cast<const TypeParam*>(nullptr));
    EXPECT_TRUE(lock.tryAcquire(false));
    EXPECT_TRUE(lock.release());
}

TYPED_TEST(ReadWriteHandles, TheFileIsKeptFresh)
{
    TypeParam lock = this->make();
    ASSERT_TRUE(lock.tryAcquire(false));
    fake_clock::advance(seconds(20));
    EXPECT_EQ(20, this->m_scene.fs().ageOf(this->files().at(0)));
    fake_timer::fire();
    EXPECT_EQ(0, this->m_scene.fs().ageOf(this->files().at(0)));
}

TYPED_TEST(ReadWriteHandles, AnEmptyFileSystemIsRefused)
{
    const boost::shared_ptr<zvAbstractFS> none;
    EXPECT_THROW(TypeParam(zvPathString_<zvMBCSSafeString>("D"), none), zvFileAccessError);
    const zvDirectoryReadWriteLock both("D", none);
    EXPECT_THROW(made(both, static_cast<const TypeParam*>(nullptr)), zvFileAccessError);
}

TYPED_TEST(ReadWriteHandles, IsMadeOfADirectoryToo)
{
    TypeParam lock(zvPathString_<zvMBCSSafeString>("D"), this->m_scene.sharedFs());
    EXPECT_TRUE(lock.tryAcquire(false));
    EXPECT_EQ(1u, this->files().size());
}

TEST(ReadWriteLock, IsAValueThatTouchesNothing)
{
    ReadWriteScene scene;
    scene.fs().addDirectory("E");
    zvDirectoryReadWriteLock both("D", scene.sharedFs());
    const zvDirectoryReadWriteLock copy(both);
    both = zvDirectoryReadWriteLock("E", scene.sharedFs());
    EXPECT_THAT(scene.operations(), IsEmpty());
    WriteLock inE = both.getWriteLock();
    WriteLock inD = copy.getWriteLock();
    EXPECT_TRUE(inE.tryAcquire(false));
    EXPECT_TRUE(inD.tryAcquire(false));
    EXPECT_THAT(scene.fs().files(), ElementsAre("D\\.deploy_write_lock", "E\\.deploy_write_lock"));
}

TEST(ReadWriteLock, TheConstantsAreWhatOthersRelyOn)
{
    EXPECT_EQ(5, zvDirectoryReadWriteLock::ACQUIRE_POLL_INTERVAL_MSEC);
    EXPECT_EQ(1000, zvDirectoryReadWriteLock::REFRESH_INTERVAL_MSEC);
    EXPECT_EQ(30, zvDirectoryReadWriteLock::STALE_TIMEOUT_SEC);
    const int* const exported[] = {&zvDirectoryReadWriteLock::ACQUIRE_POLL_INTERVAL_MSEC,
                                   &zvDirectoryReadWriteLock::REFRESH_INTERVAL_MSEC,
                                   &zvDirectoryReadWriteLock::STALE_TIMEOUT_SEC};
    EXPECT_EQ(30, *exported[2]);
}

}  // namespace
