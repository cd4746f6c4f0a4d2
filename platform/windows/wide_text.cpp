#include "platform/windows/wide_text.h"

#include <windows.h>

#include <string.h>
#include <wchar.h>

#include <algorithm>
#include <type_traits>

namespace zorvel {
namespace platform {
namespace windows {

namespace {

/// Whether a text is of ASCII alone, and its length if so. All ANSI code pages of
/// the system have these characters in the same bytes.
template <class Character>
bool isAscii(const Character* text, std::size_t& length)
{
    unsigned bits = 0;
    for (length = 0; text[length]; ++length)
        bits |= static_cast<std::make_unsigned_t<Character>>(text[length]);
    return bits < 0x80;
}

}  // namespace

std::wstring wide(const char* text)
{
    std::size_t asciiLength = 0;
    if (isAscii(text, asciiLength))
        return std::wstring(text, text + asciiLength);
    std::wstring result(strlen(text) + 1, L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, text, -1, &result[0], static_cast<int>(result.size()));
    result.resize(length > 0 ? length - 1 : 0);
    return result;
}

/// What comes back the same was representable; this needs no flag that some
/// code pages refuse. No code page takes more than four bytes for a unit.
bool narrow(const wchar_t* text, std::string& result)
{
    std::size_t asciiLength = 0;
    if (isAscii(text, asciiLength)) {
        result.resize(asciiLength);
        std::transform(text, text + asciiLength, result.begin(), [](wchar_t unit) { return static_cast<char>(unit); });
        return true;
    }
    result.resize(wcslen(text) * 4 + 1);
    const int size = static_cast<int>(result.size());
    const int length = WideCharToMultiByte(CP_ACP, 0, text, -1, &result[0], size, nullptr, nullptr);
    result.resize(length > 0 ? length - 1 : 0);
    return wide(result.c_str()) == text;
}

}  // namespace windows
}  // namespace platform
}  // namespace zorvel
