#include "platform/posix/wildcard.h"

#include "platform/codepage.h"

#include <cstring>

namespace zorvel {
namespace platform {
namespace posix {

namespace {

/// 1 or 2: a lead byte at the very end is a character of its own.
std::size_t characterLength(const char* p)
{
    return isLeadByte(static_cast<unsigned char>(*p)) && p[1] ? 2 : 1;
}

bool isSameCharacter(const char* left, const char* right)
{
    const std::size_t length = characterLength(left);
    return length == characterLength(right) && std::memcmp(left, right, length) == 0;
}

}  // namespace

bool hasWildcards(const char* component)
{
    return std::strpbrk(component, "*?") != nullptr;
}

bool matchesWildcards(const char* component, const char* name)
{
    // Where a character does not match, the last '*' takes one more; an earlier one never needs to be tried again. Wild
    // cards are single bytes that are no second bytes in any codeset; both texts advance by characters.
    const char* star = nullptr;
    const char* taken = nullptr;
    while (*name) {
        if (*component == '*') {
            star = component++;
            taken = name;
        } else if (*component == '?' || isSameCharacter(component, name)) {
            component += characterLength(component);
            name += characterLength(name);
        } else if (star) {
            component = star + 1;
            taken += characterLength(taken);
            name = taken;
        } else {
            return false;
        }
    }
    while (*component == '*')
        ++component;
    return *component == '\0';
}

bool isDotName(const char* name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

bool isReachable(const char* name)
{
    for (; *name; name += characterLength(name)) {
        if (*name == '\\')
            return false;
    }
    return true;
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
