#include "fuzz/naive/wildcard.h"

namespace zorvel {
namespace naive {

bool hasWildcards(const std::string& component)
{
    return component.find_first_of("*?") != std::string::npos;
}

bool matchesWildcards(const std::string& component, const std::string& name, LeadTest isLead)
{
    const std::vector<Character> wanted = charactersOf(component, isLead);
    const std::vector<Character> given = charactersOf(name, isLead);
    std::vector<bool> matches(given.size() + 1, false);
    matches[0] = true;
    for (const Character& character : wanted) {
        std::vector<bool> next(given.size() + 1, false);
        const std::string bytes = component.substr(character.index, character.length);
        next[0] = matches[0] && bytes == "*";
        for (std::size_t j = 1; j <= given.size(); ++j) {
            const Character& last = given[j - 1];
            if (bytes == "*")
                next[j] = matches[j] || next[j - 1];
            else
                next[j] = matches[j - 1] && (bytes == "?" || bytes == name.substr(last.index, last.length));
        }
        matches = next;
    }
    return matches.back();
}

}  // namespace naive
}  // namespace zorvel
