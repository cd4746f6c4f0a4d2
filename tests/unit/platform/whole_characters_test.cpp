#include "platform/codepage.h"

#include "tests/unit/platform/locale_scope.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::platform;

namespace {

/// wholeCharacters() for every limit up to the text's length, in one line.
std::string wholeFor(const std::string& text)
{
    std::string result;
    for (std::size_t limit = 0; limit <= text.size(); ++limit)
        result += (limit ? " " : "") + std::to_string(wholeCharacters(text.c_str(), limit));
    return result;
}

}  // namespace

TEST(WholeCharacters, AreBytesWithoutALocale)
{
    EXPECT_EQ("0", wholeFor(""));
    EXPECT_EQ("0 1 2 3", wholeFor("abc"));
    EXPECT_EQ("0 1 2 3 4", wholeFor("\x83\x5C\xE3\xFF"));
}

TEST(WholeCharacters, OfCodesets)
{
    const struct
    {
        const char* locale;
        const char* text;
        const char* whole;
    } rows[] = {
        {"ja_JP.SHIFT_JIS", "a\x83\x5C\xB1\x95\x5C", "0 1 1 3 4 4 6"},
        {"ja_JP.WINDOWS-31J", "\x87\x40x", "0 0 2 3"},
        {"ja_JP.EUC-JP", "\xA5\xBDx\x8E\xB1\x8F\xB0\xA1", "0 0 2 3 3 5 5 5 8"},
        {"zh_CN.GBK", "\x81\x40x\xB0\xA1", "0 0 2 3 3 5"},
        {"ko_KR.CP949", "\x81\x41x", "0 0 2 3"},
        {"zh_TW.BIG5", "\xA4\x40x", "0 0 2 3"},
        {"en_US.ISO-8859-1", "\x83\x5C\xE9", "0 1 2 3"},
        {"ja_JP.UTF-8", "a\xC3\xA9\xE3\x82\xBD\xF0\x9F\x98\x80", "0 1 1 3 3 3 6 6 6 6 10"},
    };
    for (const auto& row : rows) {
        const LocaleScope locale(row.locale);
        ASSERT_TRUE(locale.installed()) << row.locale;
        EXPECT_EQ(row.whole, wholeFor(row.text)) << row.locale;
    }
}

TEST(WholeCharacters, BytesThatAreNoCharacterCountAsOne)
{
    {
        const LocaleScope locale("ja_JP.UTF-8");
        ASSERT_TRUE(locale.installed());
        EXPECT_EQ("0 1 2 2 4", wholeFor("\xFF\x80\xC3\xA9"));
        EXPECT_EQ("0 0 2 3", wholeFor("\xC3x\xFE"));
    }
    const LocaleScope locale("ja_JP.SHIFT_JIS");
    ASSERT_TRUE(locale.installed());
    EXPECT_EQ("0 0 2 3", wholeFor("\x83\x20x"));
}

TEST(WholeCharacters, ATerminatorIsAByte)
{
    const LocaleScope locale("ja_JP.UTF-8");
    ASSERT_TRUE(locale.installed());
    EXPECT_EQ("0 1 2 3 3 5", wholeFor(std::string("a\0b\xC3\xA9", 5)));
}
