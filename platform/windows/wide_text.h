#pragma once

#include <string>

namespace zorvel {
namespace platform {
namespace windows {

/// A byte string of the ANSI code page in the system's own form.
std::wstring wide(const char* text);

/// The way back. False, and the result of no use, when the code page lacks a
/// character: the system would put another one that looks alike, or '?', in its
/// place, and the result would be the name of something else.
bool narrow(const wchar_t* text, std::string& result);

}  // namespace windows
}  // namespace platform
}  // namespace zorvel
