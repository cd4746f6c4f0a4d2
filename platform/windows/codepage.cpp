#include "platform/codepage.h"

#include <cctype>
#include <clocale>
#include <cstring>

#include <windows.h>

namespace zorvel {
namespace platform {

namespace {

LeadBytes askAll()
{
    LeadBytes table = {};
    for (int byte = 0x80; byte < 0x100; ++byte) {
        table.of[byte] = IsDBCSLeadByte(static_cast<unsigned char>(byte)) != FALSE;
        table.any = table.any || table.of[byte];
    }
    return table;
}

}  // namespace

/// The ANSI code page is that of the process from its beginning to its end.
const LeadBytes& allLeadBytes()
{
    static const LeadBytes table = askAll();
    return table;
}

bool isLeadByte(unsigned char byte)
{
    return byte >= 0x80 && allLeadBytes().of[byte];
}

/// Only of the locale "C" is known what it does.
std::uintptr_t lettersBeyondAscii()
{
    const char* const locale = std::setlocale(LC_CTYPE, nullptr);
    return locale != nullptr && std::strcmp(locale, "C") == 0 ? 0 : 1;
}

const std::int32_t* lowerTable()
{
    return nullptr;
}

namespace {

bool isInsideUtf8Character(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// UTF-8 as ANSI code page has no lead bytes for the system.
std::size_t wholeUtf8Characters(const char* text, std::size_t limit)
{
    std::size_t whole = limit;
    while (whole > 0 && limit - whole < 4 && isInsideUtf8Character(text[whole]))
        --whole;
    return isInsideUtf8Character(text[whole]) ? limit : whole;
}

}  // namespace

std::size_t wholeCharacters(const char* text, std::size_t limit)
{
    if (::GetACP() == CP_UTF8)
        return wholeUtf8Characters(text, limit);
    std::size_t whole = 0;
    while (whole < limit) {
        const std::size_t length = isLeadByte(static_cast<unsigned char>(text[whole])) ? 2 : 1;
        if (length > limit - whole)
            break;
        whole += length;
    }
    return whole;
}

}  // namespace platform
}  // namespace zorvel
