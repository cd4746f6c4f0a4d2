#include "tests/support/encoding.h"

#include <windows.h>

#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

/// Wine's conversion to wide characters replaces a lead byte at the end, also
/// where it is told to fail.
bool endsInsideACharacter(UINT codePage, const std::string& text)
{
    std::size_t at = 0;
    while (at < text.size())
        at += IsDBCSLeadByteEx(codePage, static_cast<BYTE>(text[at])) ? 2 : 1;
    return at > text.size();
}

std::wstring wideFrom(UINT codePage, const std::string& text)
{
    std::wstring result(text.size(), L'\0');
    const int size = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), size, &result[0], size);
    if (length == 0 || endsInsideACharacter(codePage, text))
        throw std::runtime_error("no text: " + text);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

std::string utf8From(UINT codePage, const std::string& text)
{
    if (text.empty())
        return text;
    const std::wstring characters = wideFrom(codePage, text);
    std::string result(3 * characters.size(), '\0');
    const int length = WideCharToMultiByte(CP_UTF8, 0, characters.data(), static_cast<int>(characters.size()),
                                           &result[0], static_cast<int>(result.size()), nullptr, nullptr);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

}  // namespace

std::string utf8FromCodePage932(const std::string& text)
{
    return utf8From(932, text);
}

std::string utf8FromProcessCodePage(const std::string& text)
{
    return utf8From(GetACP(), text);
}

}  // namespace test
}  // namespace zorvel
