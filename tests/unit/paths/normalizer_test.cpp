#include "tests/unit/paths/lead_byte_scope.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

/// Exact bytes: the path string's own comparison would hide differences.
std::string normalized(const std::string& text)
{
    return std::string(zvPathString(text));
}

}  // namespace

TEST(Normalizer, SeparatorsAndBlanks)
{
    const struct
    {
        const char* in;
        const char* out;
    } rows[] = {
        {" C:/Temp//dir/ ", "C:\\Temp\\dir\\"},
        {"//srv//share", "\\\\srv\\share"},
        {"\\\\srv\\share", "\\\\srv\\share"},
        {"\\\\\\server", "\\\\server"},
        {"////a", "\\\\a"},
        {"a\\\\\\b", "a\\b"},
        {"a\\/\\b", "a\\b"},
        {"\\\\", "\\\\"},
        {"\\\\\\\\", "\\\\"},
        {"\\", "\\"},
        {"/", "\\"},
        {"a\\\\", "a\\"},
        {"a//", "a\\"},
        {"", ""},
        {"   ", ""},
        {" \t\v\b\n\r\f", ""},
        {"\b\ta\f\r", "a"},
        {" a b ", "a b"},
        {"MiXeD", "MiXeD"},
        {"C:", "C:"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.out, normalized(row.in)) << row.in;
}

TEST(Normalizer, SeparatorsCollapseBeforeBlanksGo)
{
    // The pair begins at index 1 when it is collapsed, so it is no network prefix.
    EXPECT_EQ("\\srv", normalized(" //srv"));
    EXPECT_EQ("\\", normalized(" \\\\ "));
}

TEST(Normalizer, OnlyTheSevenBlanksGo)
{
    for (int byte = 1; byte < 0x80; ++byte) {
        const std::string blank(1, static_cast<char>(byte));
        const bool goes = std::string(" \t\v\b\n\r\f").find(blank) != std::string::npos;
        const std::string text = blank + "a" + blank;
        const std::string kept = byte == '/' ? "\\a\\" : text;
        EXPECT_EQ(goes ? "a" : kept, normalized(text)) << byte;
    }
    EXPECT_EQ("\xA0x\xA0", normalized("\xA0x\xA0"));
}

TEST(Normalizer, EmbeddedNulStays)
{
    EXPECT_EQ(std::string("a\0\\b", 4), normalized(std::string(" a\0//b ", 7)));
}

TEST(Normalizer, SecondBytesAreNoSeparators)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_EQ("x\x95\x5C\\y", normalized("x\x95\x5C\\y"));
    EXPECT_EQ("x\x95\x5C\\y", normalized("x\x95\x5C//y"));
    EXPECT_EQ("\x95/\\", normalized("\x95//"));
    // Index 1 lies inside the first character: collapsing begins behind it.
    EXPECT_EQ("\x95\x5C\\a", normalized("\x95\x5C\\\\a"));
}

TEST(Normalizer, ReplacedTestMeansSingleBytes)
{
    const LeadByteScope scope(&isNoLead);
    EXPECT_EQ("x\x95\\y", normalized("x\x95\x5C\\y"));
}

TEST(Normalizer, TrimmingKeepsTheLastCharacterWhole)
{
    const LeadByteScope scope(&isLead932);
    // The trim asks the code page itself; a byte of its pairs is kept whole only there.
    EXPECT_EQ("a\x95\x5C", normalized("a\x95\x5C "));
    EXPECT_EQ("a\x95\x5C", normalized(" a\x95\x5C \t"));
}

TEST(Normalizer, TrimmingAsksTheCodePageNotTheHook)
{
    // A lead byte of the code page before blanks: one blank stays, whatever test is installed.
    const std::string expected = qxIsMultiByteLead(0x95) ? "a\x95 " : "a\x95";
    {
        const LeadByteScope scope(&isLead932);
        EXPECT_EQ(expected, normalized("a\x95  "));
    }
    const LeadByteScope scope(&isNoLead);
    EXPECT_EQ(expected, normalized("a\x95  "));
}

TEST(Normalizer, TrailByteWithTheValueOfALeadByteKeepsOneBlank)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_EQ(qxIsMultiByteLead(0x95) ? "\x95\x95 " : "\x95\x95", normalized("\x95\x95   "));
}

TEST(Normalizer, LongTextsTakeLinearTime)
{
    const std::string slashes(2000000, '/');
    EXPECT_EQ("\\\\", normalized(slashes));
    std::string names;
    for (int i = 0; i < 300000; ++i)
        names += "a//";
    EXPECT_EQ(600000u, normalized(names).size());
}
