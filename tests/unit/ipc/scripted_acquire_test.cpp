/// Waiting on a scripted system: every answer of the wait.

#include "tests/unit/ipc/scripted_scene.h"

#include <limits>

using namespace zorvel::test;

namespace {

const unsigned long abandoned = 128;
const unsigned long timedOut = 258;
const unsigned long failed = 0xFFFFFFFFul;

class ScriptedAcquire : public ScriptedScene
{
protected:
    ScriptedAcquire() : semaphore("a_b", 3, false) { open(semaphore); }

    void expectNotOwned(unsigned long lastError)
    {
        EXPECT_FALSE(semaphore.OwnsLock());
        EXPECT_EQ(lastError, semaphore.LastError());
        EXPECT_EQ(lastError == timedOut, semaphore.WaitTimedOut());
    }

    /// What a timed acquire of so many seconds asks for.
    std::string waitOf(int seconds)
    {
        semaphore.TimeOut() = seconds;
        EXPECT_TRUE(semaphore.Acquire(true));
        EXPECT_EQ(seconds, semaphore.TimeOut());
        const Calls asked = calls();
        return asked.size() == 1 ? asked[0] : std::to_string(asked.size()) + " calls";
    }

    zvSemaphoreIPC semaphore;
};

TEST_F(ScriptedAcquire, WithoutLimit)
{
    EXPECT_TRUE(semaphore.Acquire(false));
    EXPECT_EQ(Calls{"wait 1 4294967295"}, calls());
    EXPECT_TRUE(semaphore.OwnsLock());
    EXPECT_EQ(0u, semaphore.LastError());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedAcquire, Timed)
{
    EXPECT_TRUE(semaphore.Acquire(true));
    EXPECT_EQ(Calls{"wait 1 3000"}, calls());
    EXPECT_TRUE(semaphore.OwnsLock());
    EXPECT_EQ(0u, semaphore.LastError());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedAcquire, OnceAtMost)
{
    EXPECT_TRUE(semaphore.TryAcquire());
    EXPECT_EQ(Calls{"wait 1 0"}, calls());
    EXPECT_TRUE(semaphore.OwnsLock());
    EXPECT_EQ(0u, semaphore.LastError());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedAcquire, SecondsBecomeA32BitProductOfMilliseconds)
{
    EXPECT_EQ("wait 1 0", waitOf(0));
    EXPECT_EQ("wait 1 1000", waitOf(1));
    EXPECT_EQ("wait 1 2147483000", waitOf(2147483));
    EXPECT_EQ("wait 1 2147484000", waitOf(2147484));
    EXPECT_EQ("wait 1 4294967000", waitOf(4294967));
    EXPECT_EQ("wait 1 704", waitOf(4294968));
    EXPECT_EQ("wait 1 4294966296", waitOf(-1));
    EXPECT_EQ("wait 1 4294966296", waitOf(std::numeric_limits<int>::max()));
    EXPECT_EQ("wait 1 0", waitOf(std::numeric_limits<int>::min()));
}

TEST_F(ScriptedAcquire, TheSystemIsAskedAlsoByAnOwner)
{
    EXPECT_TRUE(semaphore.Acquire(false));
    fake_semaphore::answerWaits(timedOut);
    EXPECT_FALSE(semaphore.TryAcquire());
    EXPECT_EQ((Calls{"wait 1 4294967295", "wait 1 0"}), calls());
    EXPECT_TRUE(semaphore.OwnsLock()) << "it has the first one still";
    EXPECT_TRUE(semaphore.WaitTimedOut());
}

TEST_F(ScriptedAcquire, AnAbandonedWait)
{
    const std::string message = "Wait on semaphore 'a__b' abandonded because the owning process has terminated.\n";
    fake_semaphore::answerWaits(abandoned);
    EXPECT_FALSE(semaphore.Acquire(false));
    expectNotOwned(abandoned);
    EXPECT_EQ(message, messages());
    EXPECT_FALSE(semaphore.Acquire(true));
    EXPECT_EQ(message, messages());
    EXPECT_FALSE(semaphore.TryAcquire());
    expectNotOwned(abandoned);
    EXPECT_EQ(message, messages());
    EXPECT_EQ((Calls{"wait 1 4294967295", "wait 1 3000", "wait 1 0"}), calls());
}

TEST_F(ScriptedAcquire, ATimedOutWaitNamesTheSeconds)
{
    fake_semaphore::answerWaits(timedOut);
    EXPECT_FALSE(semaphore.Acquire(true));
    expectNotOwned(timedOut);
    EXPECT_EQ("Wait on semaphore 'a__b' timed out after 3 seconds.\n", messages());
    semaphore.TimeOut() = -5;
    EXPECT_FALSE(semaphore.Acquire(true));
    EXPECT_EQ("Wait on semaphore 'a__b' timed out after -5 seconds.\n", messages());
    semaphore.TimeOut() = 0;
    EXPECT_FALSE(semaphore.Acquire(true));
    EXPECT_EQ("Wait on semaphore 'a__b' timed out after 0 seconds.\n", messages());
}

/// No system answers so, but the procedure is the same.
TEST_F(ScriptedAcquire, AnEndlessWaitThatTimesOutNamesTheSecondsToo)
{
    fake_semaphore::answerWaits(timedOut);
    EXPECT_FALSE(semaphore.Acquire(false));
    expectNotOwned(timedOut);
    EXPECT_EQ("Wait on semaphore 'a__b' timed out after 3 seconds.\n", messages());
}

TEST_F(ScriptedAcquire, ATryThatFindsItTakenIsSilent)
{
    fake_semaphore::answerWaits(timedOut);
    EXPECT_FALSE(semaphore.TryAcquire());
    expectNotOwned(timedOut);
    EXPECT_EQ("", messages());
}

/// Callers tell a refused wait from the others by a last error of 0.
TEST_F(ScriptedAcquire, ARefusedWaitLeavesNoLastError)
{
    const std::string message = "Failed to lock semaphore 'a__b'. \n System error: " + refusal() + '\n';
    fake_semaphore::answerWaits(failed);
    semaphore.LastError() = 99;
    EXPECT_FALSE(semaphore.Acquire(false));
    expectNotOwned(0);
    EXPECT_EQ(message, messages());
    EXPECT_FALSE(semaphore.Acquire(true));
    expectNotOwned(0);
    EXPECT_EQ(message, messages());
}

/// The message is that of every wait, not "with trywait protocol".
TEST_F(ScriptedAcquire, ARefusedTryIsReportedLikeAnyWait)
{
    fake_semaphore::answerWaits(failed);
    EXPECT_FALSE(semaphore.TryAcquire());
    expectNotOwned(0);
    EXPECT_EQ("Failed to lock semaphore 'a__b'. \n System error: " + refusal() + '\n', messages());
}

TEST_F(ScriptedAcquire, AnyOtherAnswerIsReportedAsANumber)
{
    const struct
    {
        unsigned long result;
        const char* shown;
    } answers[] = {{7, "7"},
                   {1, "1"},
                   {127, "127"},
                   {129, "129"},
                   {257, "257"},
                   {259, "259"},
                   {192, "192"},
                   {0x7FFFFFFFul, "2147483647"},
                   {0x80000000ul, "-2147483648"},
                   {0xFFFFFFFEul, "-2"}};
    for (const auto& answer : answers) {
        fake_semaphore::answerWaits(answer.result);
        for (int way = 0; way < 3; ++way) {
            EXPECT_FALSE(way == 2 ? semaphore.TryAcquire() : semaphore.Acquire(way == 1));
            expectNotOwned(answer.result);
            EXPECT_EQ("Function 'WaitForSingleObject' on semaphore 'a__b' returned an invalid value " +
                          std::string(answer.shown) + ".\n",
                      messages());
        }
    }
}

TEST_F(ScriptedAcquire, AFailureLeavesAnEarlierTokenOwned)
{
    EXPECT_TRUE(semaphore.Acquire(false));
    for (const unsigned long answer : {abandoned, timedOut, failed, 7ul}) {
        fake_semaphore::answerWaits(answer);
        EXPECT_FALSE(semaphore.Acquire(false));
        EXPECT_TRUE(semaphore.OwnsLock()) << answer;
    }
}

TEST_F(ScriptedAcquire, SuccessClearsTheLastError)
{
    fake_semaphore::answerWaits(timedOut);
    EXPECT_FALSE(semaphore.TryAcquire());
    fake_semaphore::answerWaits(0);
    EXPECT_TRUE(semaphore.TryAcquire());
    EXPECT_EQ(0u, semaphore.LastError());
    EXPECT_FALSE(semaphore.WaitTimedOut());
}

TEST_F(ScriptedAcquire, WhatIsNotOpenIsNotWaitedFor)
{
    zvSemaphoreIPC closed("name", 3, false);
    for (int way = 0; way < 3; ++way) {
        closed.LastError() = timedOut;
        EXPECT_FALSE(way == 2 ? closed.TryAcquire() : closed.Acquire(way == 1));
        EXPECT_EQ(0u, closed.LastError());
        EXPECT_FALSE(closed.WaitTimedOut());
        EXPECT_FALSE(closed.OwnsLock());
    }
    EXPECT_EQ(Calls(), calls());
    EXPECT_EQ("", messages());
}

TEST_F(ScriptedAcquire, TheTimeOutIsReadWhenItIsNeeded)
{
    int& seconds = semaphore.TimeOut();
    seconds = 12;
    EXPECT_TRUE(semaphore.Acquire(true));
    seconds = 13;
    EXPECT_TRUE(semaphore.Acquire(true));
    EXPECT_EQ((Calls{"wait 1 12000", "wait 1 13000"}), calls());
}

/// Bytes of code page 932, as they are stored.
TEST_F(ScriptedAcquire, AJapaneseUserReadsJapanese)
{
    setLanguage("ja");
    fake_semaphore::answerWaits(timedOut);
    EXPECT_FALSE(semaphore.Acquire(true));
    // セマフォ 'a__b' の待機が 3 秒後にタイムアウトしました。
    EXPECT_EQ("\x83Z\x83}\x83t\x83H 'a__b' \x82\xcc\x91\xd2\x8b@\x82\xaa 3 \x95"
              "b\x8c\xe3\x82\xc9\x83^\x83"
              "C\x83\x80\x83"
              "A\x83"
              "E\x83g\x82\xb5\x82\xdc\x82\xb5\x82\xbd\x81"
              "B\n",
              messages());
    fake_semaphore::answerWaits(7);
    EXPECT_FALSE(semaphore.Acquire(true));
    // セマフォ 'a__b' で関数 'WaitForSingleObject' は、無効な値 7 を返しました。
    EXPECT_EQ("\x83Z\x83}\x83t\x83H 'a__b' \x82\xc5\x8a\xd6\x90\x94 'WaitForSingleObject' \x82\xcd\x81"
              "A\x96\xb3\x8c\xf8\x82\xc8\x92l 7 \x82\xf0\x95\xd4\x82\xb5\x82\xdc\x82\xb5\x82\xbd\x81"
              "B\n",
              messages());
    setLanguage("en");
    fake_semaphore::answerWaits(timedOut);
    EXPECT_FALSE(semaphore.Acquire(true));
    EXPECT_EQ("Wait on semaphore 'a__b' timed out after 3 seconds.\n", messages());
}

}  // namespace
