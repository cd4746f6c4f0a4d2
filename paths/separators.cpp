#include <zorvel/paths.h>

#include <zorvel/detail/character_key.h>

#include <cstddef>

namespace {

using zorvel::detail::isLead;

/// Walks from start to p one character at a time; true when the walk steps
/// over p, because p is the second byte of a character.
bool isTrailByte(const char* p, const char* start)
{
    while (start < p)
    {
        const std::ptrdiff_t step = isLead(*start) ? 2 : 1;
        if (p - start < step)
            return true;
        start += step;
    }
    return false;
}

/// Calls visit(last byte of the character, whether it is a separator) for each
/// character of a range. A lead byte at the very end is a character of its own.
template <class Visit>
void eachCharacter(const char* first, const char* last, Visit visit)
{
    if (first == nullptr || last == nullptr || first > last)
        return;
    const char* const end = last + 1;
    while (first != end)
    {
        const bool lead = isLead(*first);
        first += lead && end - first >= 2 ? 2 : 1;
        visit(first - 1, !lead && zvIsPathSep(first[-1]));
    }
}

}  // namespace

bool zvIsPathSep(int character)
{
    return character == '\\' || character == '/';
}

bool zvIsPathSepByPtr(const char* p, const char* start)
{
    if (p == nullptr)
        return false;
    if (start != nullptr && isTrailByte(p, start))
        return false;
    return zvIsPathSep(*p);
}

const char* zvFindLastSep(const char* first, const char* last)
{
    const char* found = nullptr;
    eachCharacter(first, last, [&found](const char* byte, bool separator) {
        if (separator)
            found = byte;
    });
    return found;
}

const char* zvFindLastNotSep(const char* first, const char* last)
{
    const char* found = nullptr;
    eachCharacter(first, last, [&found](const char* byte, bool separator) {
        if (!separator)
            found = byte;
    });
    return found;
}
