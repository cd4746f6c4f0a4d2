#pragma once

#include <zorvel/paths.h>

#include <cctype>
#include <cstddef>
#include <cstdint>

/// Characters of a byte string as the library compares them. Every step asks
/// zvIsMultiByteLead, so that a replaced test changes all of them at once.
namespace zorvel {
namespace detail {

inline bool isLead(char byte)
{
    return zvIsMultiByteLead(static_cast<unsigned char>(byte));
}

/// zvIsPathSep, where nobody has to be called for it.
inline bool isSeparator(int character)
{
    return character == '\\' || character == '/';
}

/// The length of the character at p, 1 or 2: a lead byte that the end cuts off
/// counts as one byte. p lies before end.
inline std::size_t characterLength(const char* p, const char* end)
{
    return end - p >= 2 && isLead(*p) ? 2 : 1;
}

/// The key of a byte that is a character of its own: letters without case, '/'
/// as '\', a byte from 0x80 as its own negative value. tolower never sees a
/// negative value: it has no meaning for one.
inline std::uint32_t singleByteKey(char byte)
{
    const int value = static_cast<signed char>(byte);
    const int folded = value < 0 ? value : std::tolower(value);
    return static_cast<std::uint32_t>(folded == '/' ? '\\' : folded);
}

/// The key of the character at p, which moves behind it. p lies before end.
/// Bit 17 marks a lead byte, bit 16 a complete pair: a pair never equals a
/// single byte, and a lead byte cut off by the end equals no pair.
inline std::uint32_t takeKey(const char*& p, const char* end)
{
    if (!isLead(*p))
        return singleByteKey(*p++);
    std::uint32_t key = 0x20000u | static_cast<std::uint32_t>(static_cast<unsigned char>(*p++)) << 8;
    if (p != end)
        key |= 0x10000u | static_cast<unsigned char>(*p++);
    return key;
}

/// Whether the characters of a text stand at p.
inline bool standsAt(const char* p, const char* end, const char* text, const char* textEnd)
{
    while (text != textEnd) {
        if (p == end || takeKey(p, end) != takeKey(text, textEnd))
            return false;
    }
    return true;
}

/// The first character boundary at or after index, at most size. Boundaries
/// are counted from the beginning: nothing else tells a second byte apart.
inline std::size_t characterBoundary(const char* text, std::size_t size, std::size_t index)
{
    std::size_t boundary = 0;
    while (boundary < size && boundary < index)
        boundary += characterLength(text + boundary, text + size);
    return boundary;
}

}  // namespace detail
}  // namespace zorvel
