#pragma once

#include "fuzz/naive/characters.h"

namespace zorvel {
namespace naive {

/// The index of the last separator of a text, or npos.
std::size_t lastSeparator(const std::string& text, LeadTest isLead);

/// The index of the last byte of the last character that is no separator.
std::size_t lastNotSeparator(const std::string& text, LeadTest isLead);

/// Whether the byte at an index is a separator and no second byte.
bool separatesAt(const std::string& text, std::size_t index, LeadTest isLead);

bool endsInSeparator(const std::string& text, LeadTest isLead);

/// Whether a whole text is a root: one separator, or letters, a colon and one
/// separator.
bool isRoot(const std::string& text);

/// Every separator byte as '\', second bytes too.
std::string washed(std::string text);

}  // namespace naive
}  // namespace zorvel
