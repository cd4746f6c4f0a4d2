#pragma once

#include "fuzz/naive/separators.h"

namespace zorvel {
namespace naive {

bool isBlank(char byte);

/// Steps 1 and 2: separators as '\', each pair behind the first byte reduced
/// to one.
std::string withoutDoubledSeparators(std::string text, LeadTest isLead);

/// Blanks at both ends. `isCodesetLead` is the codeset's own test.
std::string trimmed(std::string text, LeadTest isCodesetLead);

std::string normalized(const std::string& text, LeadTest isLead, LeadTest isCodesetLead);

/// One more component behind a path, not yet normalised.
std::string joined(const std::string& path, std::string piece, LeadTest isLead);

/// The text before the last separator; a root and what is nothing but
/// separators keep it.
std::string directoryPart(const std::string& path, LeadTest isLead);

}  // namespace naive
}  // namespace zorvel
