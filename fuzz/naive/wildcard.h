#pragma once

#include "fuzz/naive/characters.h"

namespace zorvel {
namespace naive {

bool hasWildcards(const std::string& component);

/// Whether a name matches: '*' any characters, '?' one, everything else itself.
/// matches[j] tells whether the component so far matches the name's first j
/// characters.
bool matchesWildcards(const std::string& component, const std::string& name, LeadTest isLead);

}  // namespace naive
}  // namespace zorvel
