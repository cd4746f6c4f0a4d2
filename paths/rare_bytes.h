#pragma once

#include <cstddef>

namespace zorvel {
namespace paths {

/// What the scans leave to others, so that they need not keep anything for what happens seldom.

/// The last separator of a range. That at `last` looks like one and stands behind a byte from 0x80.
const char* lastSeparatorFrom(const char* first, const char* last);

/// Whether two texts of one size are equal that differ in the case of ASCII letters only, if at all.
bool sameButForCase(const char* left, const char* right, std::size_t size);

/// Whether two texts of one size are equal from an index on. The bytes there differ; before it the texts are equal,
/// but for the case of letters where the locale is one with the usual letters.
bool sameFromByte(const char* left, const char* right, std::size_t size, std::size_t index);

}  // namespace paths
}  // namespace zorvel
