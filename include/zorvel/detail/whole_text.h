#pragma once

#include <zorvel/export.h>

#include <cstddef>
#include <string>

/// What path strings do with a whole text. Made in the library, where a step takes many bytes at once.
namespace zorvel {
namespace detail {

/// The standard normaliser's work: '/' becomes '\', every run of separators one
/// (the first byte is left out of it, so that a leading pair, the prefix of a
/// network path, stays a pair), and white space goes at both ends.
ZORVEL_API void normalizeText(std::string& text);

/// The first index at or behind `from` at which the characters of another text
/// stand, or npos. Boundaries of characters are counted from the beginning:
/// nothing else tells a second byte apart.
ZORVEL_API std::size_t findText(const char* text, std::size_t size, const char* wanted, std::size_t wantedSize,
                                std::size_t from);

}  // namespace detail
}  // namespace zorvel
