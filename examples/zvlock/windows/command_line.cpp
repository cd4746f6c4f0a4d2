#include "examples/zvlock/windows/command_line.h"

namespace zorvel {
namespace zvlock {

namespace {

/// Backslashes count only before a quotation mark, where each is doubled; the
/// mark at the end is one of those.
std::wstring quoted(const std::wstring& word)
{
    std::wstring result(1, L'"');
    std::size_t backslashes = 0;
    for (const wchar_t character : word) {
        if (character == L'"')
            result.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        result += character;
    }
    result.append(backslashes, L'\\');
    return result += L'"';
}

/// Programs with a parser of their own are used to what needs no quotes being
/// without them.
bool needsQuotes(const std::wstring& word)
{
    return word.empty() || word.find_first_of(L" \t\n\v\"") != std::wstring::npos;
}

}  // namespace

std::wstring commandLineOf(const std::vector<std::wstring>& words)
{
    std::wstring line;
    for (const std::wstring& word : words)
        line.append(line.empty() ? L"" : L" ").append(needsQuotes(word) ? quoted(word) : word);
    return line;
}

}  // namespace zvlock
}  // namespace zorvel
