#include "fuzz/naive/messages.h"

namespace zorvel {
namespace naive {

namespace {

/// A character in every codeset; null where it has none.
struct Glyph
{
    const char* codePage932;
    const char* shiftJis;
    const char* windows31j;
    const char* eucJp;
    const char* utf8;
};

const Glyph glyphs[] = {
    {"\x83\x5A", "\x83\x5A", "\x83\x5A", "\xA5\xBB", "\xE3\x82\xBB"},  // katakana SE
    {"\x83\x5C", "\x83\x5C", "\x83\x5C", "\xA5\xBD", "\xE3\x82\xBD"},  // katakana SO, second byte '\'
    {"\x95\x5C", "\x95\x5C", "\x95\x5C", "\xC9\xBD", "\xE8\xA1\xA8"},  // the kanji for a table, second byte '\'
    {"\xB1", "\xB1", "\xB1", "\x8E\xB1", "\xEF\xBD\xB1"},              // katakana A of half width, one byte
    {"\x81\x5B", "\x81\x5B", "\x81\x5B", "\xA1\xBC", "\xE3\x83\xBC"},  // the long vowel
    {"\x87\x40", nullptr, "\x87\x40", nullptr, "\xE2\x91\xA0"},        // one in a circle
    {"\x81\x42", "\x81\x42", "\x81\x42", "\xA1\xA3", "\xE3\x80\x82"},  // the full stop
    {"\x81 ", nullptr, nullptr, nullptr, nullptr},                     // no character
};

const Glyph* glyphOf(char byte)
{
    return byte >= 'A' && byte <= 'H' ? &glyphs[byte - 'A'] : nullptr;
}

const char* bytesIn(const Glyph& glyph, Codeset codeset)
{
    switch (codeset) {
    case Codeset::shiftJis: return glyph.shiftJis;
    case Codeset::windows31j: return glyph.windows31j;
    case Codeset::eucJp: return glyph.eucJp;
    case Codeset::utf8: return glyph.utf8;
    case Codeset::ascii: break;
    }
    return nullptr;
}

/// The length of the character that a byte begins, in a text of whole ones.
std::size_t characterLength(char first, Codeset codeset)
{
    const unsigned char byte = static_cast<unsigned char>(first);
    if (byte < 0x80 || codeset == Codeset::ascii)
        return 1;
    if (codeset == Codeset::utf8)
        return 3;
    if (codeset == Codeset::eucJp)
        return 2;
    return byte >= 0xA1 && byte <= 0xDF ? 1 : 2;
}

}  // namespace

std::string inCodePage932(const std::string& written)
{
    std::string text;
    for (const char byte : written)
        text += glyphOf(byte) ? std::string(glyphOf(byte)->codePage932) : std::string(1, byte);
    return text;
}

std::optional<std::string> inCodeset(const std::string& written, Codeset codeset)
{
    std::string text;
    for (const char byte : written) {
        const Glyph* const glyph = glyphOf(byte);
        const char* const bytes = glyph ? bytesIn(*glyph, codeset) : nullptr;
        if (glyph && !bytes)
            return std::nullopt;
        text += glyph ? std::string(bytes) : std::string(1, byte);
    }
    return text;
}

std::optional<std::string> conversionsOf(const std::string& english)
{
    std::string conversions;
    for (std::size_t i = 0; i < english.size(); ++i) {
        if (english[i] != '%')
            continue;
        const std::string next = english.substr(++i, 1);
        if (next != "s" && next != "d" && next != "%")
            return std::nullopt;
        conversions += next == "%" ? "" : next;
    }
    return conversions;
}

std::string filledInOrder(const std::string& english, const std::vector<std::string>& arguments)
{
    std::string text;
    std::size_t used = 0;
    for (std::size_t i = 0; i < english.size(); ++i) {
        if (english[i] != '%')
            text += english[i];
        else
            text += english[++i] == '%' ? "%" : arguments[used++];
    }
    return text;
}

std::string filledByNumber(const std::string& translation, const std::vector<std::string>& arguments)
{
    std::string text;
    for (std::size_t i = 0; i < translation.size(); ++i) {
        if (translation[i] != '%') {
            text += translation[i];
            continue;
        }
        const char next = ++i < translation.size() ? translation[i] : '\0';
        if (next != '%' && !(next >= '1' && next <= '9'))
            return std::string();
        if (next == '%')
            text += '%';
        else if (static_cast<std::size_t>(next - '0') <= arguments.size())
            text += arguments[static_cast<std::size_t>(next - '1')];
    }
    return text;
}

std::string cut(const std::string& text, std::size_t limit, Codeset codeset)
{
    if (text.size() <= limit)
        return text;
    std::size_t end = 0;
    while (end + characterLength(text[end], codeset) <= limit)
        end += characterLength(text[end], codeset);
    return text.substr(0, end);
}

}  // namespace naive
}  // namespace zorvel
