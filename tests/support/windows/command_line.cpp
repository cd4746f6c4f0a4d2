#include "tests/support/windows/command_line.h"

#include <windows.h>

namespace zorvel {
namespace test {
namespace native {

namespace {

/// Quotes one argument: backslashes count only before a quotation mark, where
/// each is doubled.
std::wstring quoted(const std::wstring& argument)
{
    std::wstring result(1, L'"');
    std::size_t backslashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"')
            result.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        result += character;
    }
    result.append(backslashes, L'\\');
    return result += L'"';
}

}  // namespace

std::wstring wide(const std::string& text)
{
    std::wstring result(text.size(), L'\0');
    const int size = static_cast<int>(text.size());
    result.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, &result[0], size)));
    return result;
}

std::wstring commandLine(const std::vector<std::wstring>& arguments)
{
    std::wstring line;
    for (const std::wstring& argument : arguments)
        line += (line.empty() ? L"" : L" ") + quoted(argument);
    return line;
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
