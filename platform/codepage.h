#pragma once

#include <cstddef>

namespace zorvel {
namespace platform {

/// Whether a byte begins a double-byte character of the process's multibyte
/// code page (Windows: the ANSI code page; Linux: the codeset of the current
/// locale). Thread-safe.
bool isLeadByte(unsigned char byte);

/// How many of the first `limit` bytes of a longer text are whole characters of
/// the same code page, on Linux also in codesets with longer characters than two
/// bytes. Bytes that are no character count as one each. Thread-safe.
std::size_t wholeCharacters(const char* text, std::size_t limit);

}  // namespace platform
}  // namespace zorvel
