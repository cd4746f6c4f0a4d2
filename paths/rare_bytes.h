#pragma once

#include <cstddef>

namespace zorvel {
namespace paths {

/// What the scans leave to others, so that they need not keep anything for what happens seldom.

/// The last separator of a range. That at `last` looks like one and stands behind a byte from 0x80.
const char* lastSeparatorFrom(const char* first, const char* last);

/// Whether two texts of one size are equal in the present locale that are so in one with the usual letters, by the
/// case of those.
bool sameButForCase(const char* left, const char* right, std::size_t size);

/// Whether two texts of one size are equal in the present locale that are not so in one with the usual letters.
bool sameInSpiteOf(const char* left, const char* right, std::size_t size);

/// Whether two texts of one size are equal that are so before an index, where the bytes differ.
bool sameFromByte(const char* left, const char* right, std::size_t size, std::size_t index);

}  // namespace paths
}  // namespace zorvel
