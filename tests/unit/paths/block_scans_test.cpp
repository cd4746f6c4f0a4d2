#include "tests/unit/paths/lead_byte_scope.h"

#include "paths/byte_scans.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>

using namespace zorvel::paths;
using namespace zorvel::test;

// What is done block by block must be what is done character by character. The latter is done where the application
// has a lead-byte test of its own, here one that answers as the code page does. In the run of this binary in
// Shift_JIS there are second bytes.

namespace {

bool asCodePage(unsigned char byte)
{
    return qxIsMultiByteLead(byte);
}

/// Texts of separators, letters in both cases, lead bytes and bytes that look like them, of 0 to 200 bytes.
class Texts
{
public:
    std::string next()
    {
        const std::size_t size = m_random() % (m_random() % 4 == 0 ? 200 : 24);
        std::string text;
        while (text.size() < size)
            text += anyByte();
        return text;
    }

    /// The same text with some bytes in another form and, now and then, another byte.
    std::string like(std::string text)
    {
        for (char& byte : text) {
            if (m_random() % 4 == 0)
                byte = otherForm(byte);
        }
        if (!text.empty() && m_random() % 2 == 0)
            text[m_random() % text.size()] = anyByte();
        return text;
    }

    std::size_t below(std::size_t end) { return m_random() % end; }

private:
    char anyByte()
    {
        // Its terminator is one of them.
        static const char bytes[] = "\\\\//aAzZkKiI[{@`\x95\x95\x5C\x83\xE0\x80\xFF\x7F .\b\n";
        return m_random() % 8 == 0 ? static_cast<char>(m_random()) : bytes[m_random() % sizeof bytes];
    }

    static char otherForm(char byte)
    {
        return byte == '/' ? '\\' : byte == '\\' ? '/' : static_cast<char>(byte ^ 0x20);
    }

    std::mt19937 m_random{20260101};
};

/// The bytes of a text in memory of just that size, so that a sanitizer sees who reads on.
class Exact
{
public:
    explicit Exact(const std::string& text) : m_bytes(new char[text.size()]), m_size(text.size())
    {
        if (m_size != 0)
            std::memcpy(m_bytes.get(), text.data(), m_size);
    }

    char* begin() const { return m_bytes.get(); }
    char* end() const { return m_bytes.get() + m_size; }
    std::string str() const { return std::string(m_bytes.get(), m_size); }

private:
    const std::unique_ptr<char[]> m_bytes;
    const std::size_t m_size;
};

const int rounds = 40000;

std::ptrdiff_t indexOf(const char* found, const Exact& bytes)
{
    return found ? found - bytes.begin() : -1;
}

std::string normalized(const std::string& text)
{
    return std::string(zvPathString(text));
}

zvPathString plain(const std::string& text)
{
    zvPathString path;
    static_cast<std::string&>(path) = text;
    return path;
}

/// What a function gives when every character is asked for.
template <class Function>
auto byCharacter(Function function)
{
    const LeadByteScope scope(&asCodePage);
    return function();
}

template <class Block>
std::string washed(const std::string& text, Leads leads)
{
    const Exact bytes(text);
    Scans<Block>::writeBackslashes(bytes.begin(), text.size(), leads);
    return bytes.str();
}

}  // namespace

TEST(BlockScans, LastSeparators)
{
    Texts texts;
    for (int i = 0; i < rounds; ++i) {
        const std::string text = texts.next() + "x";
        const Exact bytes(text);
        const auto lastSeparator = [&] { return zvFindLastSep(bytes.begin(), bytes.end() - 1); };
        const auto lastOther = [&] { return zvFindLastNotSep(bytes.begin(), bytes.end() - 1); };
        const char* const p = bytes.begin() + texts.below(text.size());
        const auto isSeparator = [&] { return zvIsPathSepByPtr(p, bytes.begin()); };
        ASSERT_EQ(indexOf(byCharacter(lastSeparator), bytes), indexOf(lastSeparator(), bytes)) << i;
        ASSERT_EQ(indexOf(byCharacter(lastOther), bytes), indexOf(lastOther(), bytes)) << i;
        ASSERT_EQ(byCharacter(isSeparator), isSeparator()) << i;
    }
}

TEST(BlockScans, Comparisons)
{
    Texts texts;
    int same = 0;
    for (int i = 0; i < rounds; ++i) {
        const zvMBCSSafeString left(texts.next());
        const zvMBCSSafeString right(texts.like(left));
        const auto isEqual = [&] { return left == right; };
        ASSERT_EQ(byCharacter(isEqual), isEqual()) << i;
        same += left == right;
    }
    EXPECT_LT(rounds / 20, same);
    EXPECT_GT(rounds, same);
}

/// Wherever the one difference of two texts lies in a block: whether it is one of case alone depends on the byte
/// before it, which may lie in another block.
TEST(BlockScans, OneDifferenceAtEveryPlace)
{
    typedef Scans<narrow::Block> Narrow;
    const bool hasLeads = zorvel::platform::allLeadBytes().of[0x95];
    const struct
    {
        std::string left;
        std::string right;
        bool areSame;
    } cases[] = {
        {"ba", "bA", true},
        {"b/", "b\\", true},
        {"\x95"
         "a",
         "\x95"
         "A",
         !hasLeads},
        {"ba", "bw", false},
        {"b[", "b{", false},
        {"\x95/", "\x95\\", !hasLeads},
        {"b\x80", "b\xA0", false},
        {"\x95\xE1", "\x95\xC1", false},
    };
    for (const auto& one : cases) {
        for (std::size_t size = 2; size <= 200; ++size) {
            for (std::size_t at = 0; at + 2 <= size; ++at) {
                for (const char otherwise : {'x', 'X'}) {
                    const std::string left = std::string(size, 'x').replace(at, 2, one.left);
                    const std::string right = std::string(size, otherwise).replace(at, 2, one.right);
                    SCOPED_TRACE(left + " " + right);
                    ASSERT_EQ(one.areSame, sameText(left.data(), right.data(), size));
                    ASSERT_EQ(one.areSame, sameRest(left.data(), right.data(), size, 0));
                    ASSERT_EQ(one.areSame, Narrow::sameText(left.data(), right.data(), size));
                    ASSERT_EQ(one.areSame, Narrow::sameRest(left.data(), right.data(), size, 0));
                }
            }
        }
    }
}

TEST(BlockScans, Searches)
{
    Texts texts;
    int found = 0;
    for (int i = 0; i < rounds; ++i) {
        const zvPathString text = plain(texts.next());
        const std::size_t at = texts.below(text.size() + 1);
        const zvMBCSSafeString part(texts.like(text.substr(at, texts.below(12))));
        const std::size_t from = texts.below(text.size() + 2) / (i % 2 == 0 ? 1 : 8);
        const auto find = [&] { return text.find(part, from); };
        ASSERT_EQ(byCharacter(find), find()) << i;
        found += find() != std::string::npos;
    }
    EXPECT_LT(rounds / 20, found);
    EXPECT_GT(rounds, found);
}

TEST(BlockScans, Normalised)
{
    Texts texts;
    for (int i = 0; i < rounds; ++i) {
        const std::string text = texts.next();
        ASSERT_EQ(byCharacter([&] { return normalized(text); }), normalized(text)) << i;
    }
}

/// This processor may have one kind of block only, which is then compared with itself.
TEST(BlockScans, BlocksOfBothSizesFindTheSame)
{
    typedef Scans<narrow::Block> Narrow;
    Texts texts;
    for (int i = 0; i < rounds; ++i) {
        const std::string text = texts.next();
        const std::size_t size = text.size();
        const std::size_t from = texts.below(size + 1);
        const Leads leads = i % 2 == 0 ? &zorvel::platform::allLeadBytes() : nullptr;
        const Exact bytes(text);
        const Exact other(texts.like(text));
        const char* const begin = bytes.begin();
        ASSERT_EQ(lastSeparator(begin, bytes.end()), Narrow::lastSeparator(begin, bytes.end())) << i;
        ASSERT_EQ(holdsHighByte(begin, size), Narrow::holdsHighByte(begin, size)) << i;
        const bool same = sameText(begin, other.begin(), size);
        ASSERT_EQ(same, Narrow::sameText(begin, other.begin(), size)) << i;
        ASSERT_EQ(same, Narrow::sameRest(begin, other.begin(), size, 0)) << i;
        ASSERT_EQ(firstDoubled(begin, size, from, leads), Narrow::firstDoubled(begin, size, from, leads)) << i;
        const Ends ends = {{'/', '\\'}, {'a', 'A'}, texts.below(3)};
        const std::size_t starts = size > ends.distance ? size - ends.distance : 0;
        ASSERT_EQ(firstWithEnds(begin, starts, from, ends), Narrow::firstWithEnds(begin, starts, from, ends)) << i;
        const std::string byNarrow = washed<narrow::Block>(text, leads);
        writeBackslashes(bytes.begin(), size, leads);
        ASSERT_EQ(byNarrow, bytes.str()) << i;
    }
}
