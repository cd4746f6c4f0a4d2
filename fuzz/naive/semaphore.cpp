#include "fuzz/naive/semaphore.h"

namespace zorvel {
namespace naive {

namespace {

/// As it is written: up to the first NUL of the name, at most 2046 bytes, and a
/// line feed.
std::string line(const std::string& text)
{
    return text.substr(0, 2046) + "\n";
}

std::string printed(const std::string& escaped)
{
    return "'" + escaped.substr(0, escaped.find('\0')) + "'";
}

}  // namespace

std::string escapedSemaphoreName(const std::string& name)
{
    std::string escaped;
    for (const char byte : name) {
        if (byte == '_')
            escaped += "__";
        else if (byte == '\\')
            escaped += "_s";
        else if (byte == ':')
            escaped += "_c";
        else
            escaped += byte;
    }
    return escaped;
}

std::string longNameMessage(const std::string& escaped)
{
    if (escaped.size() <= 1281)
        return "";
    return line("Cannot open semaphore " + printed(escaped) + ". The name is " + std::to_string(escaped.size()) +
                " characters long. Maximum name length is 1281.");
}

std::string failureMessage(const std::string& verb, const std::string& escaped, const std::string& reason)
{
    return line("Failed to " + verb + " semaphore " + printed(escaped) + ". \n System error: " + reason);
}

}  // namespace naive
}  // namespace zorvel
