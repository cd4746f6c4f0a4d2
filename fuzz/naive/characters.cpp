#include "fuzz/naive/characters.h"

namespace zorvel {
namespace naive {

bool noLeadByte(unsigned char)
{
    return false;
}

bool shiftJisLeadByte(unsigned char byte)
{
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

bool everyByteLeads(unsigned char)
{
    return true;
}

bool isSeparator(char byte)
{
    return byte == '\\' || byte == '/';
}

namespace {

std::uint32_t keyOfSingleByte(char byte)
{
    int value = static_cast<signed char>(byte);
    if (value >= 'A' && value <= 'Z')
        value += 'a' - 'A';
    if (value == '/')
        value = '\\';
    return static_cast<std::uint32_t>(value);
}

Character characterAt(const std::string& text, std::size_t index, LeadTest isLead)
{
    const unsigned char byte = static_cast<unsigned char>(text[index]);
    if (!isLead(byte))
        return {index, 1, isSeparator(text[index]), keyOfSingleByte(text[index])};
    const std::uint32_t key = 0x20000 + byte * 256u;
    if (index + 1 == text.size())
        return {index, 1, false, key};
    return {index, 2, false, key + 0x10000 + static_cast<unsigned char>(text[index + 1])};
}

}  // namespace

std::vector<Character> charactersOf(const std::string& text, LeadTest isLead)
{
    std::vector<Character> result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); i = result.back().end())
        result.push_back(characterAt(text, i, isLead));
    return result;
}

bool sameCharacters(const std::string& left, const std::string& right, LeadTest isLead)
{
    const std::vector<Character> l = charactersOf(left, isLead);
    const std::vector<Character> r = charactersOf(right, isLead);
    if (l.size() != r.size())
        return false;
    for (std::size_t i = 0; i < l.size(); ++i) {
        if (l[i].key != r[i].key)
            return false;
    }
    return true;
}

std::size_t find(const std::string& text, const std::string& wanted, std::size_t from, LeadTest isLead)
{
    if (from >= text.size())
        return std::string::npos;
    if (wanted.empty())
        return from;
    const std::vector<Character> all = charactersOf(text, isLead);
    const std::vector<Character> keys = charactersOf(wanted, isLead);
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::size_t same = 0;
        while (same < keys.size() && i + same < all.size() && all[i + same].key == keys[same].key)
            ++same;
        if (same == keys.size() && all[i].index >= from)
            return all[i].index;
    }
    return std::string::npos;
}

}  // namespace naive
}  // namespace zorvel
