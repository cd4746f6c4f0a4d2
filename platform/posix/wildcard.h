#pragma once

namespace zorvel {
namespace platform {
namespace posix {

/// Whether a pattern component holds '*' or '?'.
bool hasWildcards(const char* component);

/// Whether a name matches: '*' any bytes, '?' one byte, everything else itself.
/// By byte and with case in every locale, in at most length times length steps.
bool matchesWildcards(const char* component, const char* name);

/// "." and "..".
bool isDotName(const char* name);

/// Whether a path of the library can name an entry: it holds no '\' but as the
/// second byte of a double-byte character.
bool isReachable(const char* name);

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
