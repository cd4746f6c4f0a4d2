#include "fuzz/naive/path_text.h"

namespace zorvel {
namespace naive {

bool isBlank(char byte)
{
    return std::string(" \t\v\b\n\r\f").find(byte) != std::string::npos;
}

/// The index of the first pair of separators behind the first byte, or npos.
static std::size_t firstPair(const std::string& text, LeadTest isLead)
{
    const std::vector<Character> characters = charactersOf(text, isLead);
    for (std::size_t i = 0; i + 1 < characters.size(); ++i) {
        if (characters[i].index >= 1 && characters[i].separates && characters[i + 1].separates)
            return characters[i].index;
    }
    return std::string::npos;
}

std::string withoutDoubledSeparators(std::string text, LeadTest isLead)
{
    for (const Character& character : charactersOf(text, isLead)) {
        if (character.separates)
            text[character.index] = '\\';
    }
    std::size_t pair;
    while ((pair = firstPair(text, isLead)) != std::string::npos)
        text.erase(pair, 1);
    return text;
}

std::string trimmed(std::string text, LeadTest isCodesetLead)
{
    while (!text.empty() && isBlank(text[0]))
        text.erase(0, 1);
    if (text.empty() || !isBlank(text.back()))
        return text;
    std::size_t last = text.size() - 1;
    while (isBlank(text[last]))
        --last;
    if (isCodesetLead(static_cast<unsigned char>(text[last])))
        ++last;
    return text.substr(0, last + 1);
}

std::string normalized(const std::string& text, LeadTest isLead, LeadTest isCodesetLead)
{
    return trimmed(withoutDoubledSeparators(text, isLead), isCodesetLead);
}

std::string joined(const std::string& path, std::string piece, LeadTest isLead)
{
    if (path.empty() && piece.size() >= 3 && isSeparator(piece[0])) {
        while (piece.size() > 2 && isSeparator(piece[1]) && isSeparator(piece[2]))
            piece.erase(0, 1);
    } else if (path.empty() && piece.size() == 2 && isSeparator(piece[0]) && isSeparator(piece[1])) {
        piece.erase(0, 1);
    }
    while (!path.empty() && !piece.empty() && isSeparator(piece[0]))
        piece.erase(0, 1);
    const std::size_t last = lastNotSeparator(piece, isLead);
    const std::size_t name = last == std::string::npos ? 0 : last + 1;
    if (piece.size() > name + 1)
        piece.resize(name + 1);
    const bool separated = path.empty() || endsInSeparator(path, isLead);
    return path + (separated ? "" : "\\") + piece;
}

std::string directoryPart(const std::string& path, LeadTest isLead)
{
    const std::size_t separator = lastSeparator(path, isLead);
    if (separator == std::string::npos)
        return std::string();
    const std::string with = path.substr(0, separator + 1);
    const bool onlySeparators = with.find_first_not_of("\\/") == std::string::npos;
    return onlySeparators || isRoot(with) ? with : path.substr(0, separator);
}

}  // namespace naive
}  // namespace zorvel
