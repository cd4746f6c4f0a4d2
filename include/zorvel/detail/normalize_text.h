#pragma once

#include <zorvel/detail/character_key.h>

#include <cstddef>
#include <string>

/// The steps of the standard normaliser, each over the whole text once.
namespace zorvel {
namespace detail {

/// Overwrites every separator that is a character of its own with '\'.
inline void unifySeparators(std::string& text)
{
    const char* const end = text.data() + text.size();
    for (std::size_t i = 0; i < text.size(); i += characterLength(text.data() + i, end))
    {
        if (!isLead(text[i]) && zvIsPathSep(text[i]))
            text[i] = '\\';
    }
}

/// Reduces every run of separators to one. The first byte is left out of it,
/// so that a leading pair, the prefix of a network path, stays a pair.
inline void collapseSeparators(std::string& text)
{
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    std::size_t kept = characterBoundary(begin, text.size(), 1);
    bool afterSeparator = false;
    for (const char* p = begin + kept; p != end;)
    {
        const std::size_t length = characterLength(p, end);
        const bool separator = !isLead(*p) && zvIsPathSep(*p);
        if (!(separator && afterSeparator))
        {
            for (std::size_t i = 0; i < length; ++i)
                text[kept++] = p[i];
        }
        afterSeparator = separator;
        p += length;
    }
    text.resize(kept);
}

/// Backspace stands where one might look for another blank: that is the set.
inline const char* blanks()
{
    return " \t\v\b\n\r\f";
}

/// Removes blanks at both ends.
inline void trimBlanks(std::string& text)
{
    text.erase(0, text.find_first_not_of(blanks()));
    const std::size_t last = text.find_last_not_of(blanks());
    if (last == std::string::npos || last + 1 == text.size())
        return;
    // The code page's own test, not the replaceable one. It sees one byte: after a second byte that has the value of a
    // lead byte, one blank stays. Better one blank too many than half a character.
    const std::size_t kept = qxIsMultiByteLead(static_cast<unsigned char>(text[last])) ? last + 2 : last + 1;
    text.erase(kept);
}

}  // namespace detail
}  // namespace zorvel
