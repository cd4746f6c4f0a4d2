#include "platform/language.h"

#include "platform/windows/wide_text.h"

#include <windows.h>

namespace zorvel {
namespace platform {
namespace {

/// Bytes that go to a console are read in its own code page.
bool outputIsConsoleOfAnotherCodePage()
{
    DWORD mode;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode) && ::GetConsoleOutputCP() != ::GetACP();
}

std::wstring wideFrom932(const char* text)
{
    const int size = ::MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, text, -1, nullptr, 0);
    if (size <= 1)
        return std::wstring();
    std::wstring result(static_cast<std::size_t>(size), L'\0');
    ::MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, text, -1, &result[0], size);
    result.pop_back();
    return result;
}

}  // namespace

std::string userLanguage()
{
    char name[9];
    const LCID locale = MAKELCID(::GetUserDefaultUILanguage(), SORT_DEFAULT);
    return ::GetLocaleInfoA(locale, LOCALE_SISO639LANGNAME, name, sizeof name) ? name : "en";
}

bool fromCodePage932(const char* text, std::string& result)
{
    const std::wstring characters = wideFrom932(text);
    if (characters.empty() && *text)
        return false;
    return !outputIsConsoleOfAnotherCodePage() && windows::narrow(characters.c_str(), result);
}

}  // namespace platform
}  // namespace zorvel
