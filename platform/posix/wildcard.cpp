#include "platform/posix/wildcard.h"

#include "platform/codepage.h"

#include <cstring>

namespace zorvel {
namespace platform {
namespace posix {

bool hasWildcards(const char* component)
{
    return std::strpbrk(component, "*?") != nullptr;
}

bool matchesWildcards(const char* component, const char* name)
{
    // When a byte does not match, the last '*' takes one byte more; an earlier one never needs to be tried again.
    const char* star = nullptr;
    const char* taken = nullptr;
    while (*name) {
        if (*component == '*') {
            star = component++;
            taken = name;
        } else if (*component == '?' || *component == *name) {
            ++component;
            ++name;
        } else if (star) {
            component = star + 1;
            name = ++taken;
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
    for (; *name; ++name) {
        if (isLeadByte(static_cast<unsigned char>(*name)) && name[1])
            ++name;
        else if (*name == '\\')
            return false;
    }
    return true;
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
