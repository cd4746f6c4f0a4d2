/// Construction, names and Open() on a scripted system.

#include "tests/unit/ipc/scripted_scene.h"

using namespace zorvel::test;

namespace {

class ScriptedOpen : public ScriptedScene
{
};

std::string nameTooLong(const std::string& name)
{
    return "Cannot open semaphore '" + name + "'. The name is " + std::to_string(name.size()) +
           " characters long. Maximum name length is 1281.\n";
}

std::string openFailed(const std::string& name, const std::string& why)
{
    return "Failed to open semaphore '" + name + "'. \n System error: " + why + '\n';
}

std::string escaped(const std::string& name)
{
    return zvSemaphoreIPC(name, 0, false).Name();
}

TEST_F(ScriptedOpen, ANewObjectHasNothingOpen)
{
    zvSemaphoreIPC semaphore("name", 17, true);
    EXPECT_EQ("name", semaphore.Name());
    EXPECT_EQ(17, semaphore.TimeOut());
    EXPECT_FALSE(semaphore.OwnsLock());
    EXPECT_FALSE(semaphore.IsValid());
    EXPECT_EQ(0u, semaphore.LastError());
    EXPECT_FALSE(semaphore.WaitTimedOut());
    EXPECT_EQ(Calls(), calls());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedOpen, NamesAreEscaped)
{
    EXPECT_EQ("", escaped(""));
    EXPECT_EQ("plain name/with.all-the=rest", escaped("plain name/with.all-the=rest"));
    EXPECT_EQ("__", escaped("_"));
    EXPECT_EQ("_s", escaped("\\"));
    EXPECT_EQ("_c", escaped(":"));
    EXPECT_EQ("a__b_sc_cd", escaped("a_b\\c:d"));
    EXPECT_EQ("____", escaped("__"));
    EXPECT_EQ("_s_s", escaped("\\\\"));
    EXPECT_EQ("_c_c", escaped("::"));
    EXPECT_EQ("_c_s__", escaped(":\\_"));
    EXPECT_EQ("Global_squeue", escaped("Global\\queue"));
    EXPECT_EQ("S", escaped("S"));
}

TEST_F(ScriptedOpen, WhatLooksEscapedIsEscapedAgain)
{
    EXPECT_EQ("__s", escaped("_s"));
    EXPECT_EQ("__c", escaped("_c"));
    EXPECT_EQ("___s__s", escaped("_\\_s"));
    EXPECT_EQ("___c__c", escaped("_:_c"));
    EXPECT_EQ("____sc", escaped("__sc"));
}

TEST_F(ScriptedOpen, BytesAboveAsciiAndTrailBytesAreBytes)
{
    EXPECT_EQ("\x83_s\xff\x80", escaped("\x83\\\xff\x80"));
    EXPECT_EQ("\x81__", escaped("\x81_"));
}

TEST_F(ScriptedOpen, CreatesWithOneTokenUnderTheEscapedName)
{
    zvSemaphoreIPC semaphore("a_b\\c:d", 1, false);
    EXPECT_TRUE(semaphore.Open());
    EXPECT_EQ(Calls{"create a__b_sc_cd 1 1"}, calls());
    EXPECT_TRUE(semaphore.IsValid());
    EXPECT_FALSE(semaphore.OwnsLock());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedOpen, AnEmptyNameAsksTheSystemNothing)
{
    {
        zvSemaphoreIPC semaphore("", 1, false);
        EXPECT_EQ("", semaphore.Name());
        EXPECT_FALSE(semaphore.Open());
        EXPECT_FALSE(semaphore.IsValid());
        EXPECT_FALSE(semaphore.Acquire(false));
        EXPECT_FALSE(semaphore.Acquire(true));
        EXPECT_FALSE(semaphore.TryAcquire());
        EXPECT_FALSE(semaphore.Release());
    }
    EXPECT_EQ(Calls(), calls());
    EXPECT_EQ("", messages());
}

/// The name of an object whose handle came by assignment may be empty too.
TEST_F(ScriptedOpen, AnEmptyNameIsOpenWhenTheHandleIs)
{
    zvSemaphoreIPC semaphore("name", 1, false);
    open(semaphore);
    zvSemaphoreIPC other("", 1, false);
    semaphore = other;
    EXPECT_FALSE(semaphore.Open());
    EXPECT_EQ(Calls(), calls());
}

TEST_F(ScriptedOpen, ARefusalIsFalseWithTheSystemsText)
{
    {
        zvSemaphoreIPC semaphore("a_b", 1, false);
        fake_semaphore::refuseToCreate();
        EXPECT_FALSE(semaphore.Open());
        EXPECT_EQ(openFailed("a__b", refusal()), messages());
        EXPECT_FALSE(semaphore.IsValid());
        EXPECT_EQ(0u, semaphore.LastError());
        EXPECT_EQ(Calls{"create a__b 1 1"}, calls());
    }
    EXPECT_EQ(Calls(), calls()) << "there was nothing to close";
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedOpen, LeavesLastErrorAlone)
{
    zvSemaphoreIPC semaphore("name", 1, false);
    semaphore.LastError() = 77;
    EXPECT_TRUE(semaphore.Open());
    EXPECT_EQ(77u, semaphore.LastError());
    fake_semaphore::refuseToCreate();
    EXPECT_FALSE(semaphore.Open());
    EXPECT_EQ(77u, semaphore.LastError());
}

TEST_F(ScriptedOpen, ASecondOpenReplacesTheHandleWithoutClosingIt)
{
    {
        zvSemaphoreIPC semaphore("name", 1, false);
        EXPECT_TRUE(semaphore.Open());
        EXPECT_TRUE(semaphore.Open());
        EXPECT_TRUE(semaphore.TryAcquire());
        EXPECT_EQ((Calls{"create name 1 1", "create name 1 1", "wait 2 0"}), calls());
    }
    EXPECT_EQ(Calls{"close 2"}, calls());
}

TEST_F(ScriptedOpen, ARefusedSecondOpenLosesTheHandle)
{
    {
        zvSemaphoreIPC semaphore("name", 1, false);
        open(semaphore);
        EXPECT_TRUE(semaphore.Acquire(false));
        fake_semaphore::refuseToCreate();
        EXPECT_FALSE(semaphore.Open());
        EXPECT_FALSE(semaphore.IsValid());
        EXPECT_TRUE(semaphore.OwnsLock());
        calls();
    }
    EXPECT_EQ(Calls(), calls());
}

TEST_F(ScriptedOpen, TheLimitOfNamesIsReportedAtConstruction)
{
    const std::string longest(1281, 'x');
    EXPECT_EQ(longest, escaped(longest));
    EXPECT_EQ("", messages());

    const std::string tooLong(1282, 'x');
    zvSemaphoreIPC semaphore(tooLong, 1, false);
    EXPECT_EQ(nameTooLong(tooLong), messages());
    EXPECT_EQ(tooLong, semaphore.Name());
    EXPECT_EQ(Calls(), calls());
}

TEST_F(ScriptedOpen, TheLimitIsThatOfTheEscapedName)
{
    escaped(std::string(640, '_') + 'x');
    EXPECT_EQ("", messages());
    escaped(std::string(641, '_'));
    EXPECT_EQ(nameTooLong(std::string(1282, '_')), messages());
}

TEST_F(ScriptedOpen, ANameThatIsTooLongIsTriedAllTheSame)
{
    const std::string tooLong(1282, 'x');
    zvSemaphoreIPC semaphore(tooLong, 1, false);
    messages();
    EXPECT_TRUE(semaphore.Open());
    EXPECT_EQ("", messages());
    EXPECT_EQ(Calls{"create " + tooLong + " 1 1"}, calls());
    EXPECT_TRUE(semaphore.TryAcquire());
}

/// The message holds 2046 bytes of text and its line end.
TEST_F(ScriptedOpen, MessagesOfVeryLongNamesAreCut)
{
    const std::string veryLong(100000, 'x');
    zvSemaphoreIPC semaphore(veryLong, 1, false);
    EXPECT_EQ(nameTooLong(veryLong).substr(0, 2046) + '\n', messages());
    EXPECT_EQ(veryLong, semaphore.Name());
    fake_semaphore::refuseToCreate();
    EXPECT_FALSE(semaphore.Open());
    EXPECT_EQ(openFailed(veryLong, "").substr(0, 2046) + '\n', messages());
    EXPECT_EQ(Calls{"create " + veryLong + " 1 1"}, calls());
}

TEST_F(ScriptedOpen, ANameIsNoFormat)
{
    zvSemaphoreIPC semaphore("%s%n%d%%%1\n", 1, false);
    fake_semaphore::refuseToCreate();
    EXPECT_FALSE(semaphore.Open());
    EXPECT_EQ(openFailed("%s%n%d%%%1\n", refusal()), messages());
}

TEST_F(ScriptedOpen, TheSystemIsGivenTheWholeNameAlsoBehindNul)
{
    const std::string name("be\0hind", 7);
    zvSemaphoreIPC semaphore(name, 1, false);
    EXPECT_EQ(name, semaphore.Name());
    EXPECT_TRUE(semaphore.Open());
    EXPECT_EQ(Calls{"create " + name + " 1 1"}, calls());
}

}  // namespace
