#include "tests/unit/paths/lead_byte_scope.h"

#include <zorvel/detail/character_key.h>

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

/// All six operators must tell the same.
void expectEqual(bool equal, const std::string& left, const std::string& right)
{
    const zvMBCSSafeString l(left);
    const zvMBCSSafeString r(right);
    EXPECT_EQ(equal, l == r) << left << " | " << right;
    EXPECT_EQ(equal, r == l) << left << " | " << right;
    EXPECT_EQ(!equal, l != r) << left << " | " << right;
    if (left.find('\0') != std::string::npos || right.find('\0') != std::string::npos)
        return;
    EXPECT_EQ(equal, l == right.c_str()) << left << " | " << right;
    EXPECT_EQ(!equal, l != right.c_str()) << left << " | " << right;
    EXPECT_EQ(equal, left.c_str() == r) << left << " | " << right;
    EXPECT_EQ(!equal, left.c_str() != r) << left << " | " << right;
}

std::uint32_t firstKey(const std::string& text, std::size_t& taken)
{
    const char* p = text.data();
    const std::uint32_t key = zorvel::detail::takeKey(p, text.data() + text.size());
    taken = static_cast<std::size_t>(p - text.data());
    return key;
}

}  // namespace

TEST(MultibyteString, CaseAndKindOfSeparatorDoNotMatter)
{
    expectEqual(true, "C:\\Temp", "c:/TEMP");
    expectEqual(true, "ABCDEFGHIJKLMNOPQRSTUVWXYZ", "abcdefghijklmnopqrstuvwxyz");
    expectEqual(true, "/", "\\");
    expectEqual(false, "a", "b");
    expectEqual(false, "a", "a ");
    expectEqual(false, "[", "{");
    expectEqual(false, "@", "`");
}

TEST(MultibyteString, TrailingSeparatorsCount)
{
    expectEqual(false, "C:\\Temp", "C:\\Temp\\");
    expectEqual(false, "a/", "a//");
}

TEST(MultibyteString, EmptyEqualsOnlyEmpty)
{
    expectEqual(true, "", "");
    expectEqual(false, "", "\\");
    expectEqual(false, "", std::string(1, '\0'));
    EXPECT_TRUE(zvMBCSSafeString() == "");
}

TEST(MultibyteString, NullEqualsNothing)
{
    const char* const null = nullptr;
    for (const char* text : {"", "a"}) {
        const zvMBCSSafeString s(text);
        EXPECT_FALSE(s == null);
        EXPECT_FALSE(null == s);
        EXPECT_TRUE(s != null);
        EXPECT_TRUE(null != s);
    }
}

TEST(MultibyteString, EmbeddedNulIsAnOrdinaryByte)
{
    expectEqual(true, std::string("a\0B", 3), std::string("A\0b", 3));
    expectEqual(false, std::string("a\0b", 3), std::string("a\0c", 3));
    EXPECT_FALSE(zvMBCSSafeString(std::string("a\0b", 3)) == "a");
    EXPECT_TRUE(zvMBCSSafeString("a") == "A\0b");
}

TEST(MultibyteString, SecondByteIsNeitherFoldedNorMapped)
{
    const LeadByteScope scope(&isLead932);
    expectEqual(true, "x\x95\x5C", "X\x95\x5C");
    expectEqual(false, "x\x95\x5C", "x\x95/");
    expectEqual(false, "\x83\x41", "\x83\x61");
    expectEqual(true, "\x83\x41\\b", "\x83\x41/B");
}

TEST(MultibyteString, LoneLeadByteEqualsNoPair)
{
    const LeadByteScope scope(&isLead932);
    expectEqual(true, "a\x95", "A\x95");
    for (int trail = 0; trail < 256; ++trail)
        expectEqual(false, "a\x95", std::string("a\x95") + static_cast<char>(trail));
}

TEST(MultibyteString, BytesThatAreNoLeadBytesEqualOnlyThemselves)
{
    const LeadByteScope scope(&isNoLead);
    for (int left = 0x80; left < 0x100; ++left) {
        for (int right = 0; right < 0x100; ++right) {
            const std::string l = std::string("a") + static_cast<char>(left);
            expectEqual(left == right, l, std::string("A") + static_cast<char>(right));
        }
    }
}

TEST(MultibyteString, ReplacedTestChangesComparisonsAtOnce)
{
    const zvMBCSSafeString left("\x95\x5C");
    const LeadByteScope scope(&isLead932);
    EXPECT_FALSE(left == "\x95/");
    const LeadByteScope single(&isNoLead);
    EXPECT_TRUE(left == "\x95/");
}

TEST(MultibyteString, CharacterKeys)
{
    const LeadByteScope scope(&isLead932);
    const struct
    {
        const char* text;
        std::uint32_t key;
        std::size_t taken;
    } rows[] = {
        {"A", 'a', 1},           {"/", '\\', 1},           {"\\", '\\', 1},         {"\x95\x5C", 0x3955C, 2},
        {"\x95", 0x29500, 1},    {"\x83\x41", 0x38341, 2}, {"\xB1", 0xFFFFFFB1, 1}, {"\x80", 0xFFFFFF80, 1},
        {"\xFF", 0xFFFFFFFF, 1}, {"\xE0\xFF", 0x3E0FF, 2}, {"1", '1', 1},
    };
    for (const auto& row : rows) {
        std::size_t taken = 0;
        EXPECT_EQ(row.key, firstKey(row.text, taken)) << row.text;
        EXPECT_EQ(row.taken, taken) << row.text;
    }
}

TEST(MultibyteString, PlainStringsCompareByCharacter)
{
    const zvMBCSSafeString left("C:\\Temp");
    const std::string same("c:/TEMP");
    const std::string other("c:/TEMP/");
    EXPECT_TRUE(left == same);
    EXPECT_TRUE(same == left);
    EXPECT_FALSE(left != same);
    EXPECT_FALSE(same != left);
    EXPECT_FALSE(left == other);
    EXPECT_TRUE(other != left);
    EXPECT_FALSE(left == std::string("c:/TEMP\0", 8));
    EXPECT_TRUE(zvPathString("C:/Temp") == same);
    EXPECT_TRUE(same == zvPathString("C:/Temp"));
    const LeadByteScope scope(&isLead932);
    EXPECT_FALSE(zvMBCSSafeString("\x83\x41") == std::string("\x83\x61"));
}
