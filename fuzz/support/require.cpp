#include "fuzz/support/require.h"

#include <cstdio>
#include <cstdlib>

namespace zorvel {
namespace fuzz {

std::string shown(const std::string& text)
{
    std::string result = "\"";
    for (const char byte : text) {
        const unsigned value = static_cast<unsigned char>(byte);
        char escaped[8];
        const bool printable = value >= 0x20 && value < 0x7F && value != '"' && value != '\\';
        std::snprintf(escaped, sizeof escaped, printable ? "%c" : "\\x%02X", value);
        result += escaped;
    }
    return result + "\" (" + std::to_string(text.size()) + " bytes)";
}

std::string shown(const char* text)
{
    return text ? shown(std::string(text)) : "null";
}

std::string shown(std::size_t value)
{
    return value == std::string::npos ? "npos" : std::to_string(value);
}

std::string shown(long value)
{
    return std::to_string(value);
}

void reportDifference(const char* what, const std::string& expected, const std::string& found)
{
    std::fprintf(stderr, "%s\n  expected: %s\n  found:    %s\n", what, expected.c_str(), found.c_str());
    std::abort();
}

}  // namespace fuzz
}  // namespace zorvel
