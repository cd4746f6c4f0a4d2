#include "suite/detail/message_format.h"

#include <charconv>
#include <cstring>

namespace zorvel {
namespace suite {
namespace {

/// Copies a text up to its end, with what `replace` gives for the byte behind
/// each '%' in place of the two. No codeset has '%' inside a character.
template <class Replace>
std::string fill(const char* text, Replace replace)
{
    std::string result;
    for (const char* p = text; *p; ++p) {
        if (*p != '%' || !p[1])
            result += *p;
        else if (*++p == '%')
            result += '%';
        else
            result += replace(*p);
    }
    return result;
}

const char* shown(const char* text)
{
    return text ? text : "(null)";
}

void appendNumber(int number, TextBuffer& buffer)
{
    char digits[16];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    buffer.append(digits, static_cast<std::size_t>(end.ptr - digits));
}

}  // namespace

bool readArguments(const char* english, std::va_list arguments, std::vector<std::string>& texts)
{
    for (const char* p = english; *p; ++p) {
        if (*p != '%')
            continue;
        ++p;
        if (*p == 's')
            texts.emplace_back(shown(va_arg(arguments, const char*)));
        else if (*p == 'd')
            texts.push_back(std::to_string(va_arg(arguments, int)));
        else if (*p != '%')
            return false;
    }
    return true;
}

std::string fillInOrder(const char* english, const std::vector<std::string>& arguments)
{
    auto next = arguments.begin();
    return fill(english, [&next](char) { return *next++; });
}

bool writeInOrder(const char* english, std::va_list arguments, TextBuffer& buffer)
{
    for (const char* p = english; *p != '\0'; p += 2) {
        const char* const conversion = std::strchr(p, '%');
        buffer.append(p, conversion ? static_cast<std::size_t>(conversion - p) : std::strlen(p));
        if (!conversion)
            return true;
        p = conversion;
        if (p[1] == 's') {
            const char* const text = shown(va_arg(arguments, const char*));
            buffer.append(text, std::strlen(text));
        } else if (p[1] == 'd') {
            appendNumber(va_arg(arguments, int), buffer);
        } else if (p[1] == '%') {
            buffer.append(p, 1);
        } else {
            return false;
        }
    }
    return true;
}

bool isTranslation(const char* text)
{
    for (const char* p = text; *p; ++p) {
        if (*p != '%')
            continue;
        ++p;
        if (*p != '%' && (*p < '1' || *p > '9'))
            return false;
    }
    return true;
}

std::string fillByNumber(const char* translation, const std::vector<std::string>& arguments)
{
    return fill(translation, [&arguments](char digit) {
        const std::size_t index = static_cast<unsigned char>(digit) - static_cast<std::size_t>('1');
        return index < arguments.size() ? arguments[index] : std::string();
    });
}

}  // namespace suite
}  // namespace zorvel
