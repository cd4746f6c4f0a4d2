/// Release, the end of an object and the rest of its operations on a scripted
/// system.

#include "tests/unit/ipc/scripted_scene.h"

#include <memory>
#include <type_traits>

using namespace zorvel::test;

namespace {

const unsigned long timedOut = 258;
const unsigned long notSupported = 0xFFFFFFFFul;

class ScriptedRelease : public ScriptedScene
{
protected:
    ScriptedRelease() : semaphore(new zvSemaphoreIPC("a_b", 3, false)) { open(*semaphore); }

    std::string postFailed() const
    {
        return "Failed to release (increment) semaphore 'a__b'. \n System error: " + refusal() + '\n';
    }

    const std::unique_ptr<zvSemaphoreIPC> semaphore;
};

class ScriptedClose : public ScriptedScene
{
protected:
    /// What the end of an open object writes.
    std::string end(int result)
    {
        {
            zvSemaphoreIPC semaphore("a_b", 3, false);
            open(semaphore);
            fake_semaphore::answerCloses(result);
        }
        EXPECT_EQ(Calls{"close 1"}, calls());
        return messages();
    }
};

typedef ScriptedScene ScriptedValue;
typedef ScriptedScene ScriptedCopy;

TEST_F(ScriptedRelease, GivesTheTokenBack)
{
    EXPECT_TRUE(semaphore->Acquire(false));
    calls();
    semaphore->LastError() = timedOut;
    EXPECT_TRUE(semaphore->Release());
    EXPECT_EQ(Calls{"release 1"}, calls());
    EXPECT_FALSE(semaphore->OwnsLock());
    EXPECT_EQ(0u, semaphore->LastError());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedRelease, NobodyAsksWhoHasTheToken)
{
    EXPECT_TRUE(semaphore->Release());
    EXPECT_EQ(Calls{"release 1"}, calls());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedRelease, ARefusalEndsOwnershipToo)
{
    EXPECT_TRUE(semaphore->Acquire(false));
    calls();
    fake_semaphore::refuseToRelease();
    semaphore->LastError() = timedOut;
    EXPECT_FALSE(semaphore->Release());
    EXPECT_EQ(Calls{"release 1"}, calls());
    EXPECT_FALSE(semaphore->OwnsLock());
    EXPECT_EQ(0u, semaphore->LastError()) << "the system's code stays in the message";
    EXPECT_EQ(postFailed(), messages());
}

TEST_F(ScriptedRelease, WhatIsNotOpenIsNotReleased)
{
    zvSemaphoreIPC closed("name", 3, false);
    closed.LastError() = timedOut;
    EXPECT_FALSE(closed.Release());
    EXPECT_EQ(0u, closed.LastError());
    EXPECT_EQ(Calls(), calls());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedRelease, WithoutAHandleOwnershipStaysAsItIs)
{
    EXPECT_TRUE(semaphore->Acquire(false));
    fake_semaphore::refuseToCreate();
    EXPECT_FALSE(semaphore->Open());
    calls();
    messages();
    EXPECT_FALSE(semaphore->Release());
    EXPECT_TRUE(semaphore->OwnsLock());
    EXPECT_EQ(Calls(), calls());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedRelease, TheEndOfAHolderReleasesNothing)
{
    {
        zvSemaphoreIPC holder("name", 3, false);
        open(holder);
        EXPECT_TRUE(holder.Acquire(false));
        calls();
    }
    EXPECT_EQ(Calls{"close 2"}, calls());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedClose, IsSilentWhateverTheResultButForAllBitsSet)
{
    EXPECT_EQ("", end(1));
    fake_semaphore::reset();
    EXPECT_EQ("", end(0)) << "a plain failure";
    fake_semaphore::reset();
    EXPECT_EQ("", end(2));
    fake_semaphore::reset();
    EXPECT_EQ("", end(-2));
}

TEST_F(ScriptedClose, AllBitsSetAreReported)
{
    EXPECT_EQ("Failed to close semaphore 'a__b'. \n System error: " + refusal() + '\n', end(-1));
}

TEST_F(ScriptedClose, WhatIsNotOpenIsNotClosed)
{
    fake_semaphore::answerCloses(-1);
    {
        const zvSemaphoreIPC semaphore("name", 3, false);
    }
    EXPECT_EQ(Calls(), calls());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedValue, IsNotSupported)
{
    zvSemaphoreIPC semaphore("a_b", 3, false);
    open(semaphore);
    long value = 4711;
    EXPECT_FALSE(semaphore.GetValue(&value));
    EXPECT_EQ(4711, value);
    EXPECT_EQ(notSupported, semaphore.LastError());
    EXPECT_FALSE(semaphore.WaitTimedOut());
    EXPECT_EQ("sem_getvalue() is not implemented on this system. Could not get the value of semaphore 'a__b'. \n"
              " System error: unimplemented function\n",
              messages());
    EXPECT_EQ(Calls(), calls());
}

TEST_F(ScriptedValue, IsNotSupportedOfWhatIsNotOpenEither)
{
    zvSemaphoreIPC semaphore("", 3, false);
    EXPECT_FALSE(semaphore.GetValue(nullptr));
    EXPECT_EQ(notSupported, semaphore.LastError());
    EXPECT_EQ("sem_getvalue() is not implemented on this system. Could not get the value of semaphore ''. \n"
              " System error: unimplemented function\n",
              messages());
}

TEST_F(ScriptedValue, TheNextOperationClearsItsLastError)
{
    zvSemaphoreIPC semaphore("name", 3, false);
    open(semaphore);
    EXPECT_FALSE(semaphore.GetValue(nullptr));
    EXPECT_TRUE(semaphore.Release());
    EXPECT_EQ(0u, semaphore.LastError());
}

TEST_F(ScriptedValue, LastErrorAndTimeOutAreWritable)
{
    zvSemaphoreIPC semaphore("name", 3, false);
    const zvSemaphoreIPC& constant = semaphore;
    semaphore.LastError() = timedOut;
    EXPECT_EQ(timedOut, constant.LastError());
    EXPECT_TRUE(constant.WaitTimedOut());
    semaphore.LastError() = 257;
    EXPECT_FALSE(constant.WaitTimedOut());
    semaphore.TimeOut() = 8;
    EXPECT_EQ(8, semaphore.TimeOut());
    static_assert(std::is_same<unsigned long, decltype(constant.LastError())>::value, "a copy");
    static_assert(std::is_same<unsigned long&, decltype(semaphore.LastError())>::value, "the field");
    static_assert(std::is_same<int&, decltype(semaphore.TimeOut())>::value, "the field");
}

TEST_F(ScriptedValue, TheNameIsACopy)
{
    zvSemaphoreIPC semaphore("name", 3, false);
    semaphore.Name() += "more";
    EXPECT_EQ("name", semaphore.Name());
}

TEST_F(ScriptedCopy, AnAssignedObjectHasEveryField)
{
    zvSemaphoreIPC source("a_b", 5, true);
    open(source);
    EXPECT_TRUE(source.Acquire(false));
    source.LastError() = timedOut;
    calls();
    zvSemaphoreIPC target("other", 9, false);
    EXPECT_EQ(&target, &(target = source));
    EXPECT_EQ("a__b", target.Name());
    EXPECT_EQ(5, target.TimeOut());
    EXPECT_TRUE(target.OwnsLock());
    EXPECT_TRUE(target.IsValid());
    EXPECT_EQ(timedOut, target.LastError());
    EXPECT_EQ(Calls(), calls()) << "nothing is duplicated";
    EXPECT_EQ("", messages()) << "an escaped name is not escaped again";
    EXPECT_TRUE(target.Release());
    EXPECT_EQ(Calls{"release 1"}, calls());
    EXPECT_TRUE(source.OwnsLock()) << "the objects share nothing but the handle";
}

TEST_F(ScriptedCopy, BothCloseTheSharedHandle)
{
    {
        zvSemaphoreIPC source("name", 5, false);
        open(source);
        zvSemaphoreIPC target("other", 5, false);
        target = source;
    }
    EXPECT_EQ((Calls{"close 1", "close 1"}), calls());
}

TEST_F(ScriptedCopy, TheHandleFromBeforeIsNotClosed)
{
    {
        zvSemaphoreIPC target("target", 5, false);
        open(target);
        {
            zvSemaphoreIPC source("source", 5, false);
            open(source);
            target = source;
            EXPECT_EQ(Calls(), calls());
        }
        EXPECT_EQ(Calls{"close 2"}, calls());
    }
    EXPECT_EQ(Calls{"close 2"}, calls()) << "handle 1 is nobody's";
}

TEST_F(ScriptedCopy, AnObjectAssignedToItselfStaysAsItIs)
{
    {
        zvSemaphoreIPC semaphore("a_b", 5, false);
        open(semaphore);
        const zvSemaphoreIPC& same = semaphore;
        semaphore = same;
        EXPECT_EQ("a__b", semaphore.Name());
        EXPECT_TRUE(semaphore.IsValid());
    }
    EXPECT_EQ(Calls{"close 1"}, calls());
}

TEST_F(ScriptedCopy, AConstructedCopySharesTheHandleLikeAnAssignedOne)
{
    {
        zvSemaphoreIPC source("a_b", 5, false);
        open(source);
        EXPECT_TRUE(source.Acquire(false));
        calls();
        zvSemaphoreIPC copy(source);
        EXPECT_EQ("a__b", copy.Name());
        EXPECT_EQ(5, copy.TimeOut());
        EXPECT_TRUE(copy.OwnsLock());
        EXPECT_TRUE(copy.IsValid());
        EXPECT_EQ(Calls(), calls());
    }
    EXPECT_EQ((Calls{"close 1", "close 1"}), calls());
}

TEST_F(ScriptedCopy, ACopyOpensUnderTheEscapedName)
{
    zvSemaphoreIPC source("a_b", 5, false);
    zvSemaphoreIPC copy("other", 1, false);
    copy = source;
    EXPECT_TRUE(copy.Open());
    EXPECT_EQ(Calls{"create a__b 1 1"}, calls());
    EXPECT_FALSE(source.IsValid());
}

}  // namespace
