#include "platform/posix/wildcard.h"

#include "tests/unit/platform/locale_scope.h"

#include <gtest/gtest.h>

using zorvel::platform::posix::isReachable;
using zorvel::platform::posix::matchesWildcards;

TEST(Wildcard, SingleBytes)
{
    const struct
    {
        const char* pattern;
        const char* name;
        bool matches;
    } rows[] = {
        {"*", "", true},          {"*", "a", true},         {"?", "", false},    {"?", "a", true},
        {"a*", "a", true},        {"*a", "ba", true},       {"*a", "ab", false}, {"*ab*cd", "xabyabcd", true},
        {"a?c", "abc", true},     {"a?c", "ac", false},     {"A", "a", false},   {"**?**", "x", true},
        {"*A", "\x83\x41", true}, {"??", "\x83\x41", true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(matchesWildcards(row.pattern, row.name), row.matches) << row.pattern << " on " << row.name;
}

TEST(Wildcard, DoubleByteCharactersAreMatchedWhole)
{
    const LocaleScope locale("ja_JP.SHIFT_JIS");
    ASSERT_TRUE(locale.installed());
    const struct
    {
        const char* pattern;
        const char* name;
        bool matches;
    } rows[] = {
        {"*A", "\x83\x41", false},
        {"*A",
         "\x83\x41"
         "A",
         true},
        {"?", "\x83\x41", true},
        {"??", "\x83\x41", false},
        {"??",
         "\x83\x41"
         "A",
         true},
        {"*\x83\x41", "a\x83\x41", true},
        {"*\x83\x41", "\x83\x83\x41", false},
        {"\x83*", "\x83\x41", false},
        {"?A", "\x83\x41", false},
        {"*\x95\x5C", "x\x95\x5C", true},
        {"\x83", "\x83", true},
        {"\x83", "\x83\x41", false},
        {"*\x83", "a\x83", true},
        {"?", "\x83", true},
        {"*AA",
         "\x83\x41"
         "AA",
         true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(matchesWildcards(row.pattern, row.name), row.matches) << row.pattern << " on " << row.name;
    EXPECT_TRUE(isReachable("\x95\x5C"));
    EXPECT_FALSE(isReachable("\x95\x5C\\"));
}
