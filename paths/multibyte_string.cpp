#include <zorvel/paths.h>

#include "paths/byte_scans.h"
#include "paths/lead_bytes.h"
#include "paths/rare_bytes.h"

#include <zorvel/detail/character_key.h>

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

/// Whether two bytes that differ are one and the same character, each by itself. A byte from 0x80 is only the same as
/// itself.
bool sameByteCharacter(char left, char right)
{
    const unsigned char one = static_cast<unsigned char>(left);
    const unsigned char other = static_cast<unsigned char>(right);
    if (((one | other) & 0x80) != 0)
        return false;
    const platform::LoweredPair keys = platform::lowered(one, other);
    return keys.first == keys.second || (detail::isSeparator(keys.first) && detail::isSeparator(keys.second));
}

}  // namespace

bool sameButForCase(const char* left, const char* right, std::size_t size)
{
    return platform::lowersAsciiAsUsual() || sameCharacters(left, right, size);
}

bool sameFromByte(const char* left, const char* right, std::size_t size, std::size_t index)
{
    return sameByteCharacter(left[index], right[index]) && !isSecondByte(left, left + index) &&
           sameRest(left, right, size, index + 1);
}

namespace {

/// Characters that are the same have the same number of bytes, and so have texts.
inline bool equal(const char* left, std::size_t leftSize, const char* right, std::size_t rightSize)
{
    if (leftSize != rightSize)
        return false;
    return testIsOfCodePage() ? sameText(left, right, leftSize) : sameCharacters(left, right, leftSize);
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
