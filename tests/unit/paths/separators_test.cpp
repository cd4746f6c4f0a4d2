#include "tests/unit/paths/lead_byte_scope.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

using namespace zorvel::test;

namespace {

const std::ptrdiff_t none = -1;

std::ptrdiff_t lastSep(const std::string& s)
{
    const char* const found = zvFindLastSep(s.data(), s.data() + s.size() - 1);
    return found == nullptr ? none : found - s.data();
}

std::ptrdiff_t lastNotSep(const std::string& s)
{
    const char* const found = zvFindLastNotSep(s.data(), s.data() + s.size() - 1);
    return found == nullptr ? none : found - s.data();
}

std::vector<std::size_t> separatorsOf(const std::string& s)
{
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (zvIsPathSepByPtr(&s[i], s.data()))
            found.push_back(i);
    }
    return found;
}

}  // namespace

TEST(Separators, ExactlyTwoCharactersAre)
{
    for (int c = -300; c < 600; ++c)
        EXPECT_EQ(c == '\\' || c == '/', zvIsPathSep(c)) << c;
}

TEST(Separators, ByPointerInSingleBytes)
{
    const LeadByteScope scope(&isNoLead);
    EXPECT_EQ((std::vector<std::size_t>{0, 2, 3}), separatorsOf("/a\\/b"));
    EXPECT_EQ((std::vector<std::size_t>{1}), separatorsOf("\x95\x5C"));
}

TEST(Separators, ByPointerKnowsSecondBytes)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_TRUE(separatorsOf("\x95\x5C").empty());
    EXPECT_EQ((std::vector<std::size_t>{2}), separatorsOf("\x95\x5C\\"));
    EXPECT_EQ((std::vector<std::size_t>{4}), separatorsOf("\x95\x95\x95\x95\\"));
    EXPECT_EQ((std::vector<std::size_t>{1, 4}), separatorsOf("a/\x95\x5C\\"));
}

TEST(Separators, ByPointerLooksAtTheByteAloneWhenStartIsNotBefore)
{
    const LeadByteScope scope(&isLead932);
    const char* const s = "\x95\x5C";
    EXPECT_FALSE(zvIsPathSepByPtr(s + 1, s));
    EXPECT_TRUE(zvIsPathSepByPtr(s + 1, s + 1));
    EXPECT_TRUE(zvIsPathSepByPtr(s + 1, s + 2));
    EXPECT_TRUE(zvIsPathSepByPtr(s + 1, nullptr));
    EXPECT_FALSE(zvIsPathSepByPtr(nullptr, s));
    EXPECT_FALSE(zvIsPathSepByPtr(nullptr, nullptr));
}

TEST(Separators, LastSeparator)
{
    EXPECT_EQ(4, lastSep("C:\\a\\b"));
    EXPECT_EQ(4, lastSep("C:\\a/b"));
    EXPECT_EQ(3, lastSep("dir/"));
    EXPECT_EQ(0, lastSep("/"));
    EXPECT_EQ(none, lastSep("dir"));
}

TEST(Separators, LastSeparatorIsNeverASecondByte)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_EQ(1, lastSep("a\\\x95\x5C"));
    EXPECT_EQ(none, lastSep("\x95\x5C"));
    EXPECT_EQ(2, lastSep("\x95\x5C\\"));
    EXPECT_EQ(none, lastSep("\x95"));
    EXPECT_EQ(0, lastSep("\\\x95"));
}

TEST(Separators, LastNotSeparator)
{
    EXPECT_EQ(2, lastNotSep("dir\\\\"));
    EXPECT_EQ(2, lastNotSep("dir"));
    EXPECT_EQ(3, lastNotSep("\\a/b/"));
    EXPECT_EQ(none, lastNotSep("\\\\"));
    EXPECT_EQ(none, lastNotSep("/"));
}

TEST(Separators, LastNotSeparatorIsTheLastByteOfItsCharacter)
{
    const LeadByteScope scope(&isLead932);
    EXPECT_EQ(1, lastNotSep("\x95\x5C"));
    EXPECT_EQ(2, lastNotSep("a\x95\x5C\\/"));
}

TEST(Separators, RangesAreNeverLeft)
{
    const LeadByteScope scope(&isLead932);
    const std::string lone = "a\\\x95";
    const std::unique_ptr<char[]> exact(new char[lone.size()]);
    std::memcpy(exact.get(), lone.data(), lone.size());
    EXPECT_EQ(exact.get() + 2, zvFindLastNotSep(exact.get(), exact.get() + 2));
    EXPECT_EQ(exact.get() + 1, zvFindLastSep(exact.get(), exact.get() + 2));
    // The range cuts the pair: its second byte is not looked at.
    const char* const pair = "\x95\x5C\\";
    EXPECT_EQ(pair, zvFindLastNotSep(pair, pair));
    EXPECT_EQ(nullptr, zvFindLastSep(pair, pair));
}

TEST(Separators, EmptyRangesAndNull)
{
    const char* const s = "\\a";
    EXPECT_EQ(nullptr, zvFindLastSep(s + 1, s));
    EXPECT_EQ(nullptr, zvFindLastNotSep(s + 1, s));
    for (const char* other : {s, static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(nullptr, zvFindLastSep(nullptr, other));
        EXPECT_EQ(nullptr, zvFindLastSep(other, nullptr));
        EXPECT_EQ(nullptr, zvFindLastNotSep(nullptr, other));
        EXPECT_EQ(nullptr, zvFindLastNotSep(other, nullptr));
    }
}
