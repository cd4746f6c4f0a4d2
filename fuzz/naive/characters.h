#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// The library's rules written down a second time, as plainly as they go and
/// without a thought for speed. Nothing here uses the library.
namespace zorvel {
namespace naive {

typedef bool (*LeadTest)(unsigned char byte);

bool noLeadByte(unsigned char byte);
bool shiftJisLeadByte(unsigned char byte);
bool everyByteLeads(unsigned char byte);

bool isSeparator(char byte);

/// One character of a text.
struct Character
{
    std::size_t index;   ///< of its first byte
    std::size_t length;  ///< 1 or 2
    bool separates;      ///< a separator, and no lead byte
    std::uint32_t key;   ///< under which it is compared

    std::size_t end() const { return index + length; }
};

/// The characters of a text from its beginning to its end.
std::vector<Character> charactersOf(const std::string& text, LeadTest isLead);

bool sameCharacters(const std::string& left, const std::string& right, LeadTest isLead);

/// The first character at or after an index at which a text stands.
std::size_t find(const std::string& text, const std::string& wanted, std::size_t from, LeadTest isLead);

}  // namespace naive
}  // namespace zorvel
