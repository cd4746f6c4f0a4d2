#pragma once

#include <cstddef>

/// The suite's path library. Both separators are accepted, '\' is written, and
/// the second byte of a double-byte character (qxIsMultiByteLead) is never
/// taken for one. Nothing allocates or throws; thread-safe.

/// Whether a path is absolute to the system (see platform/path_rules.h). False
/// for null.
bool kpIsAbsolutePath(const char* path);

/// Splits a path at its last separator into directory part and last component.
/// The separator goes, unless it belongs to a root; a drive alone counts as a
/// directory where drives exist.
///   "a\b" => "a", "b"    "a\" => "a", ""    "b" => "", "b"    "\x" => "\", "x"
///   "C:\x" => "C:\", "x"    "C:x" => "C:", "x"    "\\server" => "\\", "server"
/// The buffers must not overlap, but the directory buffer may be the path.
/// False, with both buffers as they were, for null or when a part does not fit
/// with its terminator.
bool kpSeparatePathName(const char* path, char* directory, std::size_t directorySize, char* name, std::size_t nameSize);

/// Appends a name to the path in a buffer of size bytes, with one '\' between
/// them: none when the buffer is empty, ends in a separator or holds a drive
/// alone.
///   "a" + "b" => "a\b"    "a\" + "b" => "a\b"    "" + "b" => "b"
/// False, with the buffer as it was, for null, for a buffer that is not
/// terminated within size, or when the result does not fit.
bool kpConcatPathName(char* buffer, std::size_t size, const char* name);
