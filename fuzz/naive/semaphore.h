#pragma once

#include <string>

namespace zorvel {
namespace naive {

std::string escapedSemaphoreName(const std::string& name);

/// What is written about a name that is too long, with its line feed; empty for
/// others. In the locale "C".
std::string longNameMessage(const std::string& escaped);

/// What is written about a failure: "open" or "release (increment)", and the
/// system's text.
std::string failureMessage(const std::string& verb, const std::string& escaped, const std::string& reason);

}  // namespace naive
}  // namespace zorvel
