#pragma once

#include <cstddef>
#include <cstdint>

namespace zorvel {
namespace platform {

/// Whether a byte begins a double-byte character of the process's multibyte
/// code page (Windows: the ANSI code page; Linux: the codeset of the current
/// locale). Thread-safe.
bool isLeadByte(unsigned char byte);

/// The same for all bytes at once.
struct LeadBytes
{
    bool any;      ///< whether there is one at all
    bool of[256];  ///< by the byte's value; none below 0x80
};

/// The lead bytes of the code page as it is now (Linux: until the locale is
/// changed). The table is there for good. Thread-safe.
const LeadBytes& allLeadBytes();

/// What the system keeps about the letters of the current locale, of which the low 32 bits are 0 where
/// lowersAsciiAsUsual(). As it comes, so that the one who asks the system is not one call more on the way: a comparison
/// waits for it. Thread-safe.
std::uintptr_t lettersBeyondAscii();

/// Whether tolower() in the current locale turns A to Z into a to z and leaves
/// the other bytes below 0x80 alone. False where that is not known.
/// Thread-safe.
inline bool lowersAsciiAsUsual()
{
    return static_cast<std::uint32_t>(lettersBeyondAscii()) == 0;
}

/// What tolower() makes of each byte in the current locale, until the locale is
/// changed: that of -128 first, that of 0 at lowerTableZero. Null where the system
/// keeps no such table: tolower() itself has to be asked there. Thread-safe.
const std::int32_t* lowerTable();
const int lowerTableZero = 128;

/// How many of the first `limit` bytes of a longer text are whole characters of
/// the same code page, on Linux also in codesets with longer characters than two
/// bytes. Bytes that are no character count as one each. Thread-safe.
std::size_t wholeCharacters(const char* text, std::size_t limit);

}  // namespace platform
}  // namespace zorvel
