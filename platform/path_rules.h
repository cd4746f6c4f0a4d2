#pragma once

#include <cstddef>

/// What a path means to the system, as far as its text alone tells.
namespace zorvel {
namespace platform {

/// The longest path that canonicalize() gives, with its terminator.
const std::size_t canonicalPathSize = 260;

/// 2 when the path begins with a letter and a colon that name a drive, else 0
/// (always 0 on Linux, where a drive letter is an ordinary name).
std::size_t drivePrefixLength(const char* path);

/// Windows: a drive followed by a separator, or two leading separators.
/// Linux: a leading separator.
bool isAbsolutePath(const char* path);

/// Removes "." and ".." components by text. out has canonicalPathSize bytes;
/// on failure (the result would not fit) it is empty and the answer is false.
bool canonicalize(const char* in, char* out);

/// The absolute form of a path, by text and the current directory, in at most
/// size bytes with the terminator. out may be in. False on failure, and out is
/// as it was.
bool fullPath(const char* in, char* out, std::size_t size);

}  // namespace platform
}  // namespace zorvel
