#include <zorvel/paths.h>

#include "paths/byte_scans.h"
#include "paths/lead_bytes.h"
#include "paths/rare_bytes.h"

#include <zorvel/detail/character_key.h>

#include <cctype>
#include <cstring>

namespace zorvel {
namespace paths {
namespace {

using detail::takeKey;

/// Character by character, whatever the lead-byte test and the locale.
__attribute__((noinline)) bool sameCharacters(const char* left, const char* right, std::size_t size)
{
    const char* const leftEnd = left + size;
    const char* const rightEnd = right + size;
    while (left != leftEnd && right != rightEnd) {
        if (takeKey(left, leftEnd) != takeKey(right, rightEnd))
            return false;
    }
    return left == leftEnd && right == rightEnd;
}

/// Whether two bytes below 0x80 have one key.
inline bool haveOneKey(unsigned char left, unsigned char right)
{
    const std::int32_t* const lowered = platform::lowerTable();
    const int one = lowered ? lowered[platform::lowerTableZero + left] : std::tolower(left);
    const int other = lowered ? lowered[platform::lowerTableZero + right] : std::tolower(right);
    return one == other || (detail::isSeparator(one) && detail::isSeparator(other));
}

/// Whether two bytes that differ are one and the same character, each by itself. A byte from 0x80 is only the same as
/// itself.
inline bool sameByteCharacter(char left, char right)
{
    return ((left | right) & 0x80) == 0 &&
           haveOneKey(static_cast<unsigned char>(left), static_cast<unsigned char>(right));
}

/// Byte by byte, where the lead-byte test is the code page's own, whatever the locale. Bytes that are equal are alike.
__attribute__((noinline)) bool sameInLocale(const char* left, const char* right, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        while (size - i > 8 && firstEight(left + i) == firstEight(right + i))
            i += 8;
        if (left[i] != right[i] && (!sameByteCharacter(left[i], right[i]) || isSecondByte(left, left + i)))
            return false;
    }
    return true;
}

/// Whether at an index, where two texts differ and before which they are alike, they have one character in two forms,
/// in a locale with the usual letters.
bool isSameInOtherForm(const char* left, const char* right, std::size_t index)
{
    const char lower = static_cast<char>(left[index] | 0x20);
    const bool isLetter = (left[index] ^ right[index]) == 0x20 && lower >= 'a' && lower <= 'z';
    const bool areSeparators = detail::isSeparator(left[index]) && detail::isSeparator(right[index]);
    return (isLetter || areSeparators) && !isSecondByte(left, left + index);
}

}  // namespace

bool sameFromByte(const char* left, const char* right, std::size_t size, std::size_t index)
{
    return isSameInOtherForm(left, right, index) ? sameRest(left, right, size, index + 1)
                                                 : sameInSpiteOf(left, right, size);
}

__attribute__((noinline)) bool sameButForCase(const char* left, const char* right, std::size_t size)
{
    return platform::lowersAsciiAsUsual() || sameInLocale(left, right, size);
}

__attribute__((noinline)) bool sameInSpiteOf(const char* left, const char* right, std::size_t size)
{
    return !platform::lowersAsciiAsUsual() && sameInLocale(left, right, size);
}

namespace {

/// Characters that are the same have the same number of bytes, and so have texts.
inline bool equal(const char* left, std::size_t leftSize, const char* right, std::size_t rightSize)
{
    if (leftSize != rightSize)
        return false;
    return __builtin_expect(testIsOfCodePage(), true) ? sameText(left, right, leftSize)
                                                      : sameCharacters(left, right, leftSize);
}

}  // namespace

}  // namespace paths
}  // namespace zorvel

using zorvel::paths::equal;

bool operator==(const zvMBCSSafeString& left, const char* right)
{
    return right != nullptr && equal(left.data(), left.size(), right, std::strlen(right));
}

bool operator!=(const zvMBCSSafeString& left, const char* right)
{
    return !(left == right);
}

bool operator==(const char* left, const zvMBCSSafeString& right)
{
    return right == left;
}

bool operator!=(const char* left, const zvMBCSSafeString& right)
{
    return !(right == left);
}

bool operator==(const zvMBCSSafeString& left, const zvMBCSSafeString& right)
{
    return equal(left.data(), left.size(), right.data(), right.size());
}

bool operator!=(const zvMBCSSafeString& left, const zvMBCSSafeString& right)
{
    return !(left == right);
}
