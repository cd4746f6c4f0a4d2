#include "platform/posix/wildcard.h"

#include "platform/codepage.h"

#include <cstring>

namespace zorvel {
namespace platform {
namespace posix {

namespace {

/// 1 or 2: a lead byte at the very end is a character of its own. No byte of
/// ASCII is a lead byte.
std::size_t characterLength(const char* p)
{
    const unsigned char byte = static_cast<unsigned char>(*p);
    return byte >= 0x80 && isLeadByte(byte) && p[1] ? 2 : 1;
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

namespace {

bool matchesByCharacter(const char* component, const char* name)
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

const char* behindLastWildcard(const char* component)
{
    const char* tail = component;
    while (const char* const wildcard = std::strpbrk(tail, "*?"))
        tail = wildcard + 1;
    return tail;
}

}  // namespace

NamePattern::NamePattern(const char* component)
    : m_component(component), m_tail(behindLastWildcard(component)), m_tailLength(std::strlen(m_tail))
{
}

bool NamePattern::matches(const char* name) const
{
    if (m_component[0] == '*' && m_component[1] == '\0')
        return true;
    // Equal characters are equal bytes: most names are told by their end.
    const std::size_t length = std::strlen(name);
    return endsInTail(name, length) && matchesByCharacter(m_component, name);
}

/// The last byte tells most names apart, without a call.
bool NamePattern::endsInTail(const char* name, std::size_t length) const
{
    if (m_tailLength == 0)
        return true;
    return length >= m_tailLength && name[length - 1] == m_tail[m_tailLength - 1] &&
           std::memcmp(name + length - m_tailLength, m_tail, m_tailLength) == 0;
}

bool matchesWildcards(const char* component, const char* name)
{
    return NamePattern(component).matches(name);
}

bool isDotName(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool isReachable(const char* name)
{
    if (std::strchr(name, '\\') == nullptr)
        return true;
    for (; *name; name += characterLength(name)) {
        if (*name == '\\')
            return false;
    }
    return true;
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
