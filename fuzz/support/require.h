#pragma once

#include <cstddef>
#include <string>

namespace zorvel {
namespace fuzz {

/// A value as it is shown: texts with their unprintable bytes escaped.
std::string shown(const std::string& text);
std::string shown(const char* text);
std::string shown(std::size_t value);
std::string shown(long value);
inline std::string shown(int value)
{
    return shown(static_cast<long>(value));
}
inline std::string shown(bool value)
{
    return value ? "true" : "false";
}

/// Says what differs and aborts.
[[noreturn]] void reportDifference(const char* what, const std::string& expected, const std::string& found);

/// Aborts unless the library gave what the naive implementation gives.
template <class Expected, class Found>
void requireSame(const Expected& expected, const Found& found, const char* what)
{
    if (!(expected == found))
        reportDifference(what, shown(expected), shown(found));
}

/// Aborts unless something holds.
inline void require(bool holds, const char* what)
{
    if (!holds)
        reportDifference(what, "true", "false");
}

}  // namespace fuzz
}  // namespace zorvel
