#include "fuzz/naive/separators.h"

namespace zorvel {
namespace naive {

std::size_t lastSeparator(const std::string& text, LeadTest isLead)
{
    std::size_t found = std::string::npos;
    for (const Character& character : charactersOf(text, isLead)) {
        if (character.separates)
            found = character.index;
    }
    return found;
}

std::size_t lastNotSeparator(const std::string& text, LeadTest isLead)
{
    std::size_t found = std::string::npos;
    for (const Character& character : charactersOf(text, isLead)) {
        if (!character.separates)
            found = character.end() - 1;
    }
    return found;
}

bool separatesAt(const std::string& text, std::size_t index, LeadTest isLead)
{
    std::size_t i = 0;
    while (i < index) {
        const bool lead = isLead(static_cast<unsigned char>(text[i]));
        if (lead && i + 1 == index)
            return false;
        i += lead ? 2 : 1;
    }
    return isSeparator(text[index]);
}

bool endsInSeparator(const std::string& text, LeadTest isLead)
{
    return !text.empty() && separatesAt(text, text.size() - 1, isLead);
}

bool isRoot(const std::string& text)
{
    if (text.empty() || !isSeparator(text.back()))
        return false;
    if (text.size() == 1)
        return true;
    if (text[text.size() - 2] != ':')
        return false;
    for (const char byte : text.substr(0, text.size() - 2)) {
        if (!((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')))
            return false;
    }
    return true;
}

std::string washed(std::string text)
{
    for (char& byte : text)
        byte = byte == '/' ? '\\' : byte;
    return text;
}

}  // namespace naive
}  // namespace zorvel
