#pragma once

namespace zorvel {
namespace zvlock {

/// The texts of --help.
extern const char* const description;
extern const char* const usage;
extern const char* const explanation;

}  // namespace zvlock
}  // namespace zorvel
