#include <zorvel/detail/whole_text.h>

#include "paths/byte_scans.h"
#include "paths/lead_bytes.h"

#include <zorvel/detail/character_key.h>

namespace zorvel {
namespace paths {
namespace {

const std::size_t nowhere = std::string::npos;

/// Character by character, whatever the lead-byte test and the locale.
std::size_t findCharacters(const char* text, std::size_t size, const char* wanted, std::size_t wantedSize,
                           std::size_t from)
{
    const char* const end = text + size;
    const char* p = text + detail::characterBoundary(text, size, from);
    for (; p != end; p += detail::characterLength(p, end)) {
        if (detail::standsAt(p, end, wanted, wanted + wantedSize))
            return static_cast<std::size_t>(p - text);
    }
    return nowhere;
}

/// The other byte that is the same character, in a locale with the usual letters; the byte itself where there is
/// none.
char otherForm(char byte)
{
    const char lower = static_cast<char>(byte | 0x20);
    if (lower >= 'a' && lower <= 'z')
        return static_cast<char>(byte ^ 0x20);
    return byte == '/' ? '\\' : byte == '\\' ? '/' : byte;
}

/// Whether a text ends in a lead byte without a second one, which is a character only where the text that is searched
/// ends too.
bool endsCutOff(const char* text, std::size_t size)
{
    const char* const last = text + size - 1;
    if ((*last & 0x80) == 0)
        return false;
    const platform::LeadBytes& leads = leadBytesOfCodePage();
    return leads.of[static_cast<unsigned char>(*last)] && !isSecondByte(text, last, leads);
}

/// Looks only where the first and the last byte are there. A second byte may be taken for a last one here, which
/// comparing them finds out.
std::size_t findByEnds(const char* text, std::size_t size, const char* wanted, std::size_t wantedSize, std::size_t from)
{
    if (wantedSize > size)
        return nowhere;
    const std::size_t starts = size - wantedSize + 1;
    const char last = wanted[wantedSize - 1];
    const Ends ends = {{wanted[0], otherForm(wanted[0])}, {last, otherForm(last)}, wantedSize - 1};
    const bool atEndOnly = endsCutOff(wanted, wantedSize);
    for (std::size_t i = atEndOnly && from < starts ? starts - 1 : from; i < starts; ++i) {
        i = firstWithEnds(text, starts, i, ends);
        if (i < starts && !isSecondByte(text, text + i) && sameText(wanted, text + i, wantedSize))
            return i;
    }
    return nowhere;
}

}  // namespace
}  // namespace paths

namespace detail {

std::size_t findText(const char* text, std::size_t size, const char* wanted, std::size_t wantedSize, std::size_t from)
{
    if (from >= size)
        return paths::nowhere;
    if (wantedSize == 0)
        return from;
    if (paths::testIsOfCodePage() && platform::lowersAsciiAsUsual())
        return paths::findByEnds(text, size, wanted, wantedSize, from);
    return paths::findCharacters(text, size, wanted, wantedSize, from);
}

}  // namespace detail
}  // namespace zorvel
