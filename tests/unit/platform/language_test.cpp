#include "platform/language.h"

#include "tests/unit/platform/locale_scope.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace zorvel::platform;

namespace {

/// The variable LANGUAGE for a scope.
class LanguageScope
{
public:
    explicit LanguageScope(const char* value) { setenv("LANGUAGE", value, 1); }
    ~LanguageScope() { unsetenv("LANGUAGE"); }
    LanguageScope(const LanguageScope&) = delete;
    LanguageScope& operator=(const LanguageScope&) = delete;
};

class Language : public testing::Test
{
protected:
    Language() { unsetenv("LANGUAGE"); }
};

std::string converted(const char* text)
{
    std::string result;
    return fromCodePage932(text, result) ? result : "failed";
}

}  // namespace

TEST_F(Language, IsThatOfTheLocale)
{
    EXPECT_EQ("en", userLanguage());
    for (const char* name : {"ja_JP.SHIFT_JIS", "ja_JP.EUC-JP", "ja_JP.UTF-8"}) {
        const LocaleScope locale(name);
        ASSERT_TRUE(locale.installed()) << name;
        EXPECT_EQ("ja", userLanguage()) << name;
    }
    const LocaleScope locale("ko_KR.EUC-KR");
    EXPECT_EQ("ko", userLanguage());
}

TEST_F(Language, IsTheFirstOfTheListThatTheUserPrefers)
{
    const LocaleScope locale("ko_KR.EUC-KR");
    ASSERT_TRUE(locale.installed());
    const struct
    {
        const char* list;
        const char* language;
    } rows[] = {{"ja", "ja"},    {"ja:en", "ja"}, {"ja_JP:ko", "ja"}, {"ja_JP.UTF-8", "ja"}, {"ja@x", "ja"},
                {"de:ja", "de"}, {"jam", "jam"},  {"", "ko"},         {":ja", "ja"},         {":", "ko"}};
    for (const auto& row : rows) {
        const LanguageScope list(row.list);
        EXPECT_EQ(row.language, userLanguage()) << row.list;
    }
}

TEST_F(Language, ListIsNotAskedInTheNeutralLocale)
{
    const LanguageScope list("ja");
    EXPECT_EQ("en", userLanguage());
}

// As the C library does with its own texts.
TEST_F(Language, ListIsAskedInTheNeutralLocaleOfACodeset)
{
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
    const LanguageScope list("ja");
    EXPECT_EQ("ja", userLanguage());
    std::setlocale(LC_ALL, "C");
}

TEST_F(Language, OfMessagesIsMeant)
{
    const LocaleScope locale("ja_JP.EUC-JP");
    ASSERT_TRUE(locale.installed());
    ASSERT_NE(nullptr, std::setlocale(LC_MESSAGES, "ko_KR.EUC-KR"));
    EXPECT_EQ("ko", userLanguage());
}

TEST_F(Language, TextsAreConvertedToTheLocalesCodeset)
{
    const char* const text = "a\x83\x5C\xB1\n";
    EXPECT_EQ("failed", converted(text));
    EXPECT_EQ("", converted(""));
    EXPECT_EQ("plain '%1'\n", converted("plain '%1'\n"));
    const struct
    {
        const char* locale;
        const char* bytes;
    } rows[] = {{"ja_JP.SHIFT_JIS", "a\x83\x5C\xB1\n"},
                {"ja_JP.WINDOWS-31J", "a\x83\x5C\xB1\n"},
                {"ja_JP.EUC-JP", "a\xA5\xBD\x8E\xB1\n"},
                {"ja_JP.UTF-8", "a\xE3\x82\xBD\xEF\xBD\xB1\n"},
                {"en_US.ISO-8859-1", "failed"}};
    for (const auto& row : rows) {
        const LocaleScope locale(row.locale);
        ASSERT_TRUE(locale.installed()) << row.locale;
        EXPECT_EQ(row.bytes, converted(text)) << row.locale;
    }
}

/// Characters that the code page has beyond the standard it is made from.
TEST_F(Language, TextsAreOfTheCodePage)
{
    const LocaleScope locale("ja_JP.UTF-8");
    ASSERT_TRUE(locale.installed());
    EXPECT_EQ("\xE2\x91\xA0\\~", converted("\x87\x40\\~"));
}

TEST_F(Language, WhatIsNoTextIsNotConverted)
{
    const LocaleScope locale("ja_JP.UTF-8");
    ASSERT_TRUE(locale.installed());
    EXPECT_EQ("failed", converted("a\x83"));
    EXPECT_EQ("failed", converted("\xFF"));
    EXPECT_EQ("failed", converted("\x83\x20"));
}

TEST_F(Language, LongTextsAreConvertedWhole)
{
    const LocaleScope locale("ja_JP.UTF-8");
    ASSERT_TRUE(locale.installed());
    std::string text;
    std::string expected;
    for (int count = 0; count < 100000; ++count) {
        text += "\xB1";
        expected += "\xEF\xBD\xB1";
    }
    EXPECT_EQ(expected, converted(text.c_str()));
}
