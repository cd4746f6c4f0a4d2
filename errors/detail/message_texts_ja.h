#pragma once

namespace zorvel {
namespace errors {

/// The Japanese texts of the library's messages in the order of their
/// identifiers, in code page 932, with %1 to %3 for the arguments.
extern const char* const textsInJapanese[15];

}  // namespace errors
}  // namespace zorvel
