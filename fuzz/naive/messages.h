#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zorvel {
namespace naive {

enum class Codeset
{
    ascii,
    shiftJis,
    windows31j,
    eucJp,
    utf8
};

/// A text of a translation is written down with capitals for its Japanese
/// characters: 'A' to 'G', and 'H' for bytes that are no character. Everything
/// else is ASCII.
std::string inCodePage932(const std::string& written);

/// The same text in a codeset; nothing where it has no counterpart for all of
/// it.
std::optional<std::string> inCodeset(const std::string& written, Codeset codeset);

/// The conversions of an English text in order, 's' or 'd'; nothing when it has
/// others.
std::optional<std::string> conversionsOf(const std::string& english);

/// The arguments as they are to be shown, put into a text. Empty when it has
/// other conversions.
std::string filledInOrder(const std::string& english, const std::vector<std::string>& arguments);
std::string filledByNumber(const std::string& translation, const std::vector<std::string>& arguments);

/// As much of a text of whole characters as fits without one being cut.
std::string cut(const std::string& text, std::size_t limit, Codeset codeset);

}  // namespace naive
}  // namespace zorvel
