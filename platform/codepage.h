#pragma once

namespace zorvel {
namespace platform {

/// Whether a byte begins a double-byte character of the process's multibyte
/// code page (Windows: the ANSI code page; Linux: the codeset of the current
/// locale). Thread-safe.
bool isLeadByte(unsigned char byte);

}  // namespace platform
}  // namespace zorvel
