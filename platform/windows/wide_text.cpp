#include "platform/windows/wide_text.h"

#include <windows.h>

#include <string.h>
#include <wchar.h>

namespace zorvel {
namespace platform {
namespace windows {

namespace {

/// All ANSI code pages of the system have these characters in the same bytes.
bool narrowAscii(const wchar_t* text, std::string& result)
{
    result.clear();
    for (; *text; ++text) {
        if (*text >= 0x80)
            return false;
        result += static_cast<char>(*text);
    }
    return true;
}

}  // namespace

std::wstring wide(const char* text)
{
    std::wstring result(strlen(text) + 1, L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, text, -1, &result[0], static_cast<int>(result.size()));
    result.resize(length > 0 ? length - 1 : 0);
    return result;
}

/// What comes back the same was representable; this needs no flag that some
/// code pages refuse. No code page takes more than four bytes for a unit.
bool narrow(const wchar_t* text, std::string& result)
{
    if (narrowAscii(text, result))
        return true;
    result.resize(wcslen(text) * 4 + 1);
    const int size = static_cast<int>(result.size());
    const int length = WideCharToMultiByte(CP_ACP, 0, text, -1, &result[0], size, nullptr, nullptr);
    result.resize(length > 0 ? length - 1 : 0);
    return wide(result.c_str()) == text;
}

}  // namespace windows
}  // namespace platform
}  // namespace zorvel
