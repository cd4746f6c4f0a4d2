#include "platform/codepage.h"
#include "platform/path_rules.h"
#include "platform/posix/native_path.h"

#include "tests/unit/platform/locale_scope.h"

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <string>

using namespace zorvel::platform;

namespace {

/// The lead bytes in one line: "81-9F E0-FC".
std::string leadBytes()
{
    std::string text;
    for (int first = 0; first < 256; ++first) {
        int last = first;
        while (last < 256 && isLeadByte(static_cast<unsigned char>(last)))
            ++last;
        if (last == first)
            continue;
        char range[16];
        std::snprintf(range, sizeof range, "%s%02X-%02X", text.empty() ? "" : " ", first, last - 1);
        text += range;
        first = last;
    }
    return text;
}

}  // namespace

TEST(CodePage, LeadBytesFollowTheLocale)
{
    const struct
    {
        const char* locale;
        const char* leads;
    } rows[] = {
        {"ja_JP.SHIFT_JIS", "81-9F E0-FC"},
        {"ja_JP.WINDOWS-31J", "81-9F E0-FC"},
        {"ja_JP.EUC-JP", "8E-8E A1-FE"},
        {"ja_JP.EUC-JP-MS", "8E-8E A1-FE"},
        {"ja_JP.EUC-JISX0213", "8E-8E A1-FE"},
        {"zh_CN.GBK", "81-FE"},
        {"zh_CN.GB2312", "A1-FE"},
        {"ko_KR.CP949", "81-FE"},
        {"ko_KR.EUC-KR", "A1-FE"},
        {"zh_TW.BIG5", "81-FE"},
        {"en_US.ISO-8859-1", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ("", leadBytes());
        const LocaleScope locale(row.locale);
        ASSERT_TRUE(locale.installed()) << row.locale;
        EXPECT_EQ(row.leads, leadBytes()) << row.locale;
    }
    EXPECT_EQ("", leadBytes());
}

TEST(CodePage, LettersAreLoweredAsUsualOrTheirTableIsAsked)
{
    for (const char* name : {"C", "ja_JP.SHIFT_JIS", "ja_JP.EUC-JP", "zh_CN.GBK", "ko_KR.CP949", "zh_TW.BIG5",
                             "C.UTF-8", "ja_JP.UTF-8", "tr_TR.ISO-8859-9"}) {
        const LocaleScope locale(name);
        ASSERT_TRUE(locale.installed()) << name;
        bool asUsual = true;
        for (unsigned char byte = 0; byte < 0x80; ++byte) {
            const int lowered = lowerTable()[lowerTableZero + byte];
            EXPECT_EQ(std::tolower(byte), lowered) << name;
            asUsual = asUsual && lowered == (byte >= 'A' && byte <= 'Z' ? byte + 0x20 : byte);
        }
        EXPECT_EQ(asUsual, lowersAsciiAsUsual()) << name;
        EXPECT_EQ(std::string(name) != "tr_TR.ISO-8859-9", asUsual) << name;
    }
}

TEST(CodePage, Utf8HasNoLeadBytes)
{
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
    EXPECT_EQ("", leadBytes());
    std::setlocale(LC_ALL, "C");
}

TEST(CodePage, NativePathKeepsSecondBytes)
{
    EXPECT_STREQ("a/\x95/b", posix::NativePath("a\\\x95\x5C"
                                               "b")
                                 .c_str());
    const LocaleScope locale("ja_JP.SHIFT_JIS");
    ASSERT_TRUE(locale.installed());
    EXPECT_STREQ("a/\x95\x5C"
                 "b",
                 posix::NativePath("a\\\x95\x5C"
                                   "b")
                     .c_str());
    EXPECT_STREQ("\x95\x5C/\x95", posix::NativePath("\x95\x5C\\\x95").c_str());
}

TEST(CodePage, CanonicalFormKeepsSecondBytes)
{
    char out[canonicalPathSize];
    EXPECT_TRUE(canonicalize("\\x\\\x95\x5C\\..", out));
    EXPECT_STREQ("\\x\\\x95", out);
    const LocaleScope locale("ja_JP.SHIFT_JIS");
    ASSERT_TRUE(locale.installed());
    EXPECT_TRUE(canonicalize("\\x\\\x95\x5C\\..", out));
    EXPECT_STREQ("\\x", out);
    EXPECT_TRUE(canonicalize("\\x\\\x95\x5C..", out));
    EXPECT_STREQ("\\x\\\x95\x5C..", out);
    EXPECT_TRUE(canonicalize("\\\x95", out));
    EXPECT_STREQ("\\\x95", out);
}
