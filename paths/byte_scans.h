#pragma once

#include "paths/rare_bytes.h"
#include "platform/codepage.h"

#include <zorvel/export.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zorvel {
namespace paths {

namespace narrow {
class Block;
}
namespace wide {
#if defined(ZORVEL_WIDE_BLOCKS)
class Block;
#else
using narrow::Block;
#endif
}  // namespace wide

/// The bytes with which a text may begin and end, two of each, and how far the two ends are apart.
struct Ends
{
    char first[2];
    char last[2];
    std::size_t distance;
};

typedef const platform::LeadBytes* Leads;  ///< null for a text without any

/// Scans of texts, a block of bytes at a step. They see bytes; where they are given lead bytes they see characters,
/// and the text begins with one. Nothing outside the text is read.
template <class Block>
struct Scans
{
    /// The last separator of a range that begins with a character, or null, where the lead-byte test is the code
    /// page's own.
    static const char* lastSeparator(const char* first, const char* end);

    /// Whether a byte from 0x80 is among them.
    static bool holdsHighByte(const char* text, std::size_t size);

    /// Whether two texts of one size are equal by character, where the lead-byte test is the code page's own.
    static bool sameText(const char* left, const char* right, std::size_t size);

    /// The same where all before an index is alike already, in a locale with the usual letters, and no second byte of a
    /// character that differs stands at the index.
    static bool sameRest(const char* left, const char* right, std::size_t size, std::size_t from);

    /// Writes '\' for each '/'.
    static void writeBackslashes(char* text, std::size_t size, Leads leads);

    /// The first '\' that stands behind another one, neither before `from`, or size.
    static std::size_t firstDoubled(const char* text, std::size_t size, std::size_t from, Leads leads);

    /// The first index from `from`, and below `starts`, at which both ends stand, or `starts`.
    static std::size_t firstWithEnds(const char* text, std::size_t starts, std::size_t from, const Ends& ends);
};

extern template struct Scans<narrow::Block>;
extern template struct Scans<wide::Block>;

/// Whether this processor has wide blocks. False until the library's static objects are made.
ZORVEL_LOCAL extern const bool blocksAreWide;

/// Whether two bytes that differ in just these bits are unlike in any place of any text, in a locale with the usual
/// letters: neither one letter in two cases nor the two separators.
inline bool areNeverAlike(unsigned char differing)
{
    return differing != ('a' ^ 'A') && differing != ('\\' ^ '/');
}

/// The first byte is the lowest.
inline std::uint64_t firstEight(const char* text)
{
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text, sizeof bytes);
    return bytes;
}

// The same for whatever processor this is.

inline const char* lastSeparator(const char* first, const char* end)
{
    return blocksAreWide ? Scans<wide::Block>::lastSeparator(first, end)
                         : Scans<narrow::Block>::lastSeparator(first, end);
}

inline bool holdsHighByte(const char* text, std::size_t size)
{
    return blocksAreWide ? Scans<wide::Block>::holdsHighByte(text, size)
                         : Scans<narrow::Block>::holdsHighByte(text, size);
}

inline bool sameRest(const char* left, const char* right, std::size_t size, std::size_t from)
{
    return blocksAreWide ? Scans<wide::Block>::sameRest(left, right, size, from)
                         : Scans<narrow::Block>::sameRest(left, right, size, from);
}

/// Whether the first difference of eight bytes from the same eight with other bits settles that the texts are unlike.
inline bool beginsUnlike(std::uint64_t differs)
{
    const std::uint64_t caseBits = 0x2020202020202020;
    const unsigned shift = static_cast<unsigned>(__builtin_ctzll(differs)) & 0x38;
    return (differs & ~caseBits) != 0 && areNeverAlike(static_cast<unsigned char>(differs >> shift));
}

/// Texts that are not equal differ most often among the first eight bytes.
inline bool sameText(const char* left, const char* right, std::size_t size)
{
    const std::uint64_t differs = size < 8 ? 0 : firstEight(left) ^ firstEight(right);
    if (__builtin_expect(differs == 0, true))
        return blocksAreWide ? Scans<wide::Block>::sameText(left, right, size)
                             : Scans<narrow::Block>::sameText(left, right, size);
    return beginsUnlike(differs) ? sameInSpiteOf(left, right, size) : sameRest(left, right, size, 0);
}

inline void writeBackslashes(char* text, std::size_t size, Leads leads)
{
    return blocksAreWide ? Scans<wide::Block>::writeBackslashes(text, size, leads)
                         : Scans<narrow::Block>::writeBackslashes(text, size, leads);
}

inline std::size_t firstDoubled(const char* text, std::size_t size, std::size_t from, Leads leads)
{
    return blocksAreWide ? Scans<wide::Block>::firstDoubled(text, size, from, leads)
                         : Scans<narrow::Block>::firstDoubled(text, size, from, leads);
}

inline std::size_t firstWithEnds(const char* text, std::size_t starts, std::size_t from, const Ends& ends)
{
    return blocksAreWide ? Scans<wide::Block>::firstWithEnds(text, starts, from, ends)
                         : Scans<narrow::Block>::firstWithEnds(text, starts, from, ends);
}

}  // namespace paths
}  // namespace zorvel
