#pragma once

#include <optional>
#include <string>

namespace zorvel {
namespace zvlock {

/// What the name of a lock file says.
struct LockName
{
    int rank;            ///< the order of the kinds
    const char* kind;    ///< as in LockEntry
    std::string number;  ///< as in LockEntry
};

/// Empty for a name (without directory) that is no lock file's.
std::optional<LockName> lockNameOf(const std::string& name);

/// Exclusive holder, queue by level, writer, readers by number.
bool comesBefore(const LockName& one, const LockName& other);

}  // namespace zvlock
}  // namespace zorvel
