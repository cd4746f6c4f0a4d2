#include <zorvel/paths.h>

#include <zorvel/detail/character_key.h>

#include <cstring>

namespace {

using zorvel::detail::takeKey;

bool sameCharacters(const char* left, const char* leftEnd, const char* right, const char* rightEnd)
{
    while (left != leftEnd && right != rightEnd)
    {
        if (takeKey(left, leftEnd) != takeKey(right, rightEnd))
            return false;
    }
    return left == leftEnd && right == rightEnd;
}

/// Equal bytes are equal characters, whatever the lead-byte test says.
bool equal(const char* left, std::size_t leftSize, const char* right, std::size_t rightSize)
{
    if (leftSize == rightSize && std::memcmp(left, right, leftSize) == 0)
        return true;
    return sameCharacters(left, left + leftSize, right, right + rightSize);
}

}  // namespace

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
