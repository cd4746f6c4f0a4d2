#include <zorvel/detail/whole_text.h>

#include "paths/byte_scans.h"
#include "paths/lead_bytes.h"

#include <zorvel/detail/character_key.h>

#include <cstdint>
#include <cstring>

namespace zorvel {
namespace paths {
namespace {

using detail::characterBoundary;
using detail::characterLength;
using detail::isLead;

/// Overwrites every separator that is a character of its own with '\', whatever the lead-byte test.
void unifyCharacters(std::string& text)
{
    const char* const end = text.data() + text.size();
    for (std::size_t i = 0; i < text.size(); i += characterLength(text.data() + i, end)) {
        if (!isLead(text[i]) && zvIsPathSep(text[i]))
            text[i] = '\\';
    }
}

/// Reduces every run of separators to one, whatever the lead-byte test.
void collapseCharacters(std::string& text)
{
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    std::size_t kept = characterBoundary(begin, text.size(), 1);
    bool afterSeparator = false;
    for (const char* p = begin + kept; p != end;) {
        const std::size_t length = characterLength(p, end);
        const bool separator = !isLead(*p) && zvIsPathSep(*p);
        if (!(separator && afterSeparator)) {
            for (std::size_t i = 0; i < length; ++i)
                text[kept++] = p[i];
        }
        afterSeparator = separator;
        p += length;
    }
    text.resize(kept);
}

/// Moves what stands behind a dropped separator to the front, up to the next one to drop. A text without the dropped
/// ones has the same second bytes: a separator ends a character.
void collapse(std::string& text, Leads leads)
{
    std::size_t dropped = firstDoubled(text.data(), text.size(), 1, leads);
    if (dropped == text.size())
        return;
    char* const begin = text.data();
    std::size_t kept = dropped;
    while (dropped != text.size()) {
        const std::size_t next = firstDoubled(begin, text.size(), dropped, leads);
        std::memmove(begin + kept, begin + dropped + 1, next - dropped - 1);
        kept += next - dropped - 1;
        dropped = next;
    }
    text.resize(kept);
}

/// The same as the two above where texts may be looked at in blocks.
void unifyAndCollapse(std::string& text)
{
    const bool mayHaveLeads = holdsHighByte(text.data(), text.size());
    const platform::LeadBytes* const leads = mayHaveLeads ? &leadBytesOfCodePage() : nullptr;
    writeBackslashes(text.data(), text.size(), leads);
    collapse(text, leads);
}

/// Backspace stands where one might look for another blank: that is the set.
bool isBlank(char byte)
{
    const std::uint64_t blanks =
        1ull << ' ' | 1ull << '\t' | 1ull << '\v' | 1ull << '\b' | 1ull << '\n' | 1ull << '\r' | 1ull << '\f';
    const unsigned char value = static_cast<unsigned char>(byte);
    return value <= ' ' && (blanks >> value & 1) != 0;
}

/// Removes blanks at both ends.
void trimBlanks(std::string& text)
{
    std::size_t first = 0;
    while (first != text.size() && isBlank(text[first]))
        ++first;
    if (first != 0)
        text.erase(0, first);
    std::size_t end = text.size();
    while (end != 0 && isBlank(text[end - 1]))
        --end;
    if (end == 0 || end == text.size())
        return;
    // The code page's own test, not the replaceable one. It sees one byte: after a second byte that has the value of
    // a lead byte, one blank stays. Better one blank too many than half a character.
    text.erase(qxIsMultiByteLead(static_cast<unsigned char>(text[end - 1])) ? end + 1 : end);
}

}  // namespace
}  // namespace paths

namespace detail {

void normalizeText(std::string& text)
{
    if (paths::testIsOfCodePage()) {
        paths::unifyAndCollapse(text);
    } else {
        paths::unifyCharacters(text);
        paths::collapseCharacters(text);
    }
    paths::trimBlanks(text);
}

}  // namespace detail
}  // namespace zorvel
