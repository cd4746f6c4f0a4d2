#include <zorvel/paths.h>

#include "paths/byte_scans.h"
#include "paths/detail/narrow_block.h"
#include "paths/lead_bytes.h"
#include "paths/rare_bytes.h"

#include <zorvel/detail/character_key.h>

#include <cstddef>

namespace zorvel {
namespace paths {
namespace {

using detail::isLead;

/// Walks from start to p one character at a time, whatever the lead-byte test; true when the walk steps over p,
/// because p is the second byte of a character.
bool walkStepsOver(const char* p, const char* start)
{
    while (start < p) {
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
void eachCharacter(const char* first, const char* end, Visit visit)
{
    while (first != end) {
        const bool lead = isLead(*first);
        first += lead && end - first >= 2 ? 2 : 1;
        visit(first - 1, !lead && zvIsPathSep(first[-1]));
    }
}

__attribute__((noinline)) const char* lastSeparatorByWalk(const char* first, const char* end)
{
    const char* found = nullptr;
    eachCharacter(first, end, [&found](const char* byte, bool separator) {
        if (separator)
            found = byte;
    });
    return found;
}

__attribute__((noinline)) const char* lastNotSeparatorByWalk(const char* first, const char* end)
{
    const char* found = nullptr;
    eachCharacter(first, end, [&found](const char* byte, bool separator) {
        if (!separator)
            found = byte;
    });
    return found;
}

const char* lastNotSeparator(const char* first, const char* end)
{
    while (end != first) {
        --end;
        if (!zvIsPathSep(*end) || isSecondByte(first, end))
            return end;
    }
    return nullptr;
}

/// By characters, where the lead-byte test is the code page's own. Most names have less than 32 bytes.
inline const char* lastSeparatorOfPath(const char* first, const char* end)
{
    typedef narrow::Block Block;
    const std::ptrdiff_t most = 2 * Block::size;
    if (end - first < most)
        return lastSeparator(first, end);
    const Block::Mask front = Block::load(end - most, Block::size).separators();
    const Block::Mask found = Block::load(end - most / 2, Block::size).separators() << Block::size | front;
    if (found == 0)
        return lastSeparator(first, end - most);
    const char* const last = end - most + Block::last(found);
    return last == first || (last[-1] & 0x80) == 0 ? last : lastSeparatorFrom(first, last);
}

/// A null last byte lies before any first one.
bool isEmptyRange(const char* first, const char* last)
{
    return first == nullptr || first > last;
}

}  // namespace

/// Not a part of those who call it, which need keep nothing then.
__attribute__((noinline)) const char* lastSeparatorFrom(const char* first, const char* last)
{
    return isSecondByte(first, last, leadBytesOfCodePage()) ? lastSeparator(first, last) : last;
}

}  // namespace paths
}  // namespace zorvel

using namespace zorvel::paths;

bool zvIsPathSep(int character)
{
    return character == '\\' || character == '/';
}

bool zvIsPathSepByPtr(const char* p, const char* start)
{
    if (p == nullptr || !zvIsPathSep(*p))
        return false;
    if (start == nullptr || start >= p)
        return true;
    return testIsOfCodePage() ? !isSecondByte(start, p) : !walkStepsOver(p, start);
}

const char* zvFindLastSep(const char* first, const char* last)
{
    if (isEmptyRange(first, last))
        return nullptr;
    return testIsOfCodePage() ? lastSeparatorOfPath(first, last + 1) : lastSeparatorByWalk(first, last + 1);
}

const char* zvFindLastNotSep(const char* first, const char* last)
{
    if (isEmptyRange(first, last))
        return nullptr;
    return testIsOfCodePage() ? lastNotSeparator(first, last + 1) : lastNotSeparatorByWalk(first, last + 1);
}
