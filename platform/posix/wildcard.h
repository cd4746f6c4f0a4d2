#pragma once

#include <cstddef>

namespace zorvel {
namespace platform {
namespace posix {

/// Whether a pattern component holds '*' or '?'.
bool hasWildcards(const char* component);

/// A pattern component that many names are held against. The text stays the
/// caller's and must outlive it.
class NamePattern
{
public:
    explicit NamePattern(const char* component);

    /// See matchesWildcards().
    bool matches(const char* name) const;

private:
    bool endsInTail(const char* name, std::size_t length) const;

    const char* m_component;
    const char* m_tail;  ///< what stands behind the last wild card
    std::size_t m_tailLength;
};

/// Whether a name matches: '*' any characters, '?' one, everything else itself.
/// With case in every locale; a double-byte character is matched whole, and in
/// UTF-8 each byte counts as a character. In at most length times length steps.
bool matchesWildcards(const char* component, const char* name);

/// "." and "..".
bool isDotName(const char* name);

/// Whether a path of the library can name an entry: it holds no '\' but as the
/// second byte of a double-byte character.
bool isReachable(const char* name);

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
