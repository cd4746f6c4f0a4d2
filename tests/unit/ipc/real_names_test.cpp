/// Names on the system's own semaphores.

#include "tests/unit/ipc/real_scene.h"

#include <vector>

using namespace zorvel::test;

namespace {

class RealNames : public RealScene
{
protected:
    /// One semaphore that works and that a second object of the name meets.
    void expectWorks(const std::string& name)
    {
        const auto first = opened(name);
        const auto second = opened(name);
        EXPECT_TRUE(first->TryAcquire());
        EXPECT_FALSE(second->TryAcquire());
        EXPECT_TRUE(second->WaitTimedOut());
        EXPECT_TRUE(first->Release());
        EXPECT_TRUE(second->TryAcquire());
        EXPECT_TRUE(second->Release());
    }

    /// As the system decides about a name that needs no escape.
    void expectAsTheSystemSays(const std::string& name)
    {
        const unsigned long code = whyRefusesName(name);
        zvSemaphoreIPC semaphore(name, 1, false);
        messages();
        EXPECT_EQ(code == 0, semaphore.Open()) << name.size();
        EXPECT_EQ(code == 0, semaphore.IsValid());
        EXPECT_EQ(code == 0 ? std::string() : openFailed(name, code), messages());
        EXPECT_EQ(0u, semaphore.LastError());
        EXPECT_EQ(code == 0, semaphore.TryAcquire());
        EXPECT_EQ("", messages());
    }

    std::string ofLength(std::size_t length)
    {
        const std::string name = freshName();
        return name + std::string(length - name.size(), 'x');
    }
};

TEST_F(RealNames, AnyByteMayBeInAName)
{
    const std::string name = freshName();
    for (int byte = 1; byte < 256; ++byte) {
        expectWorks(name + static_cast<char>(byte));
        expectWorks(static_cast<char>(byte) + name);
    }
    EXPECT_EQ("", messages());
}

/// Case counts, and so does everything that is escaped.
TEST_F(RealNames, NamesOfOtherAsciiCharactersAreOtherSemaphores)
{
    const std::string name = freshName();
    std::vector<std::unique_ptr<zvSemaphoreIPC>> all;
    for (int byte = 1; byte < 128; ++byte) {
        all.push_back(opened(name + static_cast<char>(byte)));
        EXPECT_TRUE(all.back()->TryAcquire()) << byte;
    }
    for (const char* end : {"_s", "_c", "__", "\\\\", "::", "\\:", "", " ", "  "}) {
        all.push_back(opened(name + "?" + end + "."));
        EXPECT_TRUE(all.back()->TryAcquire()) << end;
    }
    EXPECT_EQ("", messages());
}

TEST_F(RealNames, NamesThatMeanSomethingToFileSystemsAreOrdinary)
{
    const std::string end = freshName();
    for (const char* begin : {"/", "../", "./", "..\\..\\", "C:\\", "\\\\server\\share\\", "Global\\", "Local\\",
                              "a/b/", "~", "$HOME", "*?", "\r\n", "-"})
        expectWorks(begin + end);
    expectWorks(".");
    expectWorks("..");
    expectWorks("/");
    EXPECT_EQ("", messages());
}

TEST_F(RealNames, AnEmptyNameIsRefusedInSilence)
{
    zvSemaphoreIPC semaphore("", 1, false);
    EXPECT_FALSE(semaphore.Open());
    EXPECT_FALSE(semaphore.Acquire(false));
    EXPECT_FALSE(semaphore.Release());
    EXPECT_EQ("", messages());
}

TEST_F(RealNames, NulIsRefused)
{
    const std::string name = freshName();
    for (const std::string& end : {std::string(1, '\0'), std::string("\0x", 2)}) {
        const auto whatNulWouldCutItTo = opened(name);
        EXPECT_TRUE(whatNulWouldCutItTo->TryAcquire());
        zvSemaphoreIPC semaphore(name + end, 1, false);
        EXPECT_FALSE(semaphore.Open());
        EXPECT_FALSE(semaphore.IsValid());
        EXPECT_EQ(openFailed(name, whyRefusesName(name + end)), messages());
        EXPECT_FALSE(semaphore.TryAcquire());
    }
    zvSemaphoreIPC nothingElse(std::string(1, '\0'), 1, false);
    EXPECT_FALSE(nothingElse.Open());
    EXPECT_EQ(openFailed("", whyRefusesName(std::string(1, '\0'))), messages());
}

TEST_F(RealNames, LongNames)
{
    for (const std::size_t length : {100u, 259u, 260u, 1280u, 1281u, 1282u, 2046u, 2048u, 32767u, 32768u, 100000u})
        expectAsTheSystemSays(ofLength(length));
    EXPECT_EQ(0u, whyRefusesName(ofLength(259)));
    EXPECT_NE(0u, whyRefusesName(ofLength(32768)));
}

/// The system's limit counts characters after the escape.
TEST_F(RealNames, TheSystemsLimitIsThatOfTheEscapedName)
{
    const std::string name = freshName() + std::string(16384, '_');
    zvSemaphoreIPC semaphore(name, 1, false);
    const std::string escaped = semaphore.Name();
    messages();
    EXPECT_LT(32768u, escaped.size());
    EXPECT_FALSE(semaphore.Open());
    EXPECT_EQ(openFailed(escaped, whyRefusesName(escaped)), messages());
}

TEST_F(RealNames, LongNamesThatDifferInTheirLastCharacterAreOtherSemaphores)
{
    const std::string name = ofLength(258);
    const auto one = opened(name + '1');
    const auto two = opened(name + '2');
    EXPECT_TRUE(one->TryAcquire());
    EXPECT_TRUE(two->TryAcquire());
    EXPECT_FALSE(opened(name + '1')->TryAcquire());
}

}  // namespace
