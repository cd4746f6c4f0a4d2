#include "suite/qx.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

TEST(Regexp, SearchesWithoutCase)
{
    EXPECT_TRUE(qxRegexpi("a Temporary file", "TEMP"));
    EXPECT_TRUE(qxRegexpi("ABC", "^[a-c]+$"));
    EXPECT_FALSE(qxRegexpi("ABD", "^[a-c]+$"));
    EXPECT_TRUE(qxRegexpi("", "^$"));
    EXPECT_FALSE(qxRegexpi("", "a"));
    EXPECT_FALSE(qxRegexpi("\xC4", "^\xE4$"));
}

TEST(Regexp, AnchorsMeanTheWholeText)
{
    EXPECT_FALSE(qxRegexpi("a\nb", "^b$"));
    EXPECT_FALSE(qxRegexpi("a\nb", "^a$"));
    EXPECT_FALSE(qxRegexpi("a\n", "^a$"));
}

TEST(Regexp, NullAndBadPatternsAreFalse)
{
    EXPECT_FALSE(qxRegexpi(nullptr, "a"));
    EXPECT_FALSE(qxRegexpi("a", nullptr));
    EXPECT_FALSE(qxRegexpi("a", "("));
    EXPECT_FALSE(qxRegexpi("a", "*"));
    EXPECT_FALSE(qxRegexpi("a", "("));
}

TEST(Regexp, LongTextsDoNotOverflowTheStack)
{
    const std::string text(4000000, 'a');
    EXPECT_FALSE(qxRegexpi(text.c_str(), "^(a|b)*c$"));
    EXPECT_TRUE(qxRegexpi(text.c_str(), "^a"));
}

TEST(Regexp, PatternsMadeUpAsOneGoes)
{
    for (int i = 0; i < 200; ++i) {
        const std::string number = std::to_string(i);
        EXPECT_TRUE(qxRegexpi(number.c_str(), ("^" + number + "$").c_str()));
        EXPECT_FALSE(qxRegexpi("x", ("^" + number + "$").c_str()));
    }
}

TEST(Regexp, ManyThreads)
{
    std::atomic<int> wrong(0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&wrong, t] {
            for (int i = 0; i < 200; ++i) {
                const std::string pattern = "^thread" + std::to_string((t + i) % 50) + "$";
                if (!qxRegexpi(("THREAD" + std::to_string((t + i) % 50)).c_str(), pattern.c_str()))
                    ++wrong;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(0, wrong);
}
