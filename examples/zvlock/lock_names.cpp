#include "examples/zvlock/lock_names.h"

#include <tuple>

namespace zorvel {
namespace zvlock {

namespace {

enum Rank
{
    exclusive,
    queued,
    writer,
    reader,
};

/// The digits behind a prefix.
std::optional<std::string> numberBehind(const std::string& prefix, const std::string& name)
{
    if (name.compare(0, prefix.size(), prefix) != 0)
        return std::nullopt;
    const std::string number = name.substr(prefix.size());
    if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    return number;
}

}  // namespace

std::optional<LockName> lockNameOf(const std::string& name)
{
    if (name == ".deploy_write_lock")
        return LockName{writer, "writer", "-"};
    if (const auto number = numberBehind(".deploy_read_lock.", name))
        return LockName{reader, "reader", *number};
    if (const auto level = numberBehind(".deploy_lock.", name))
        return *level == "0" ? LockName{exclusive, "exclusive", *level} : LockName{queued, "queued", *level};
    return std::nullopt;
}

/// Numbers without leading zeros: the longer is the greater.
bool comesBefore(const LockName& one, const LockName& other)
{
    const std::size_t length = one.number.size();
    const std::size_t otherLength = other.number.size();
    return std::tie(one.rank, length, one.number) < std::tie(other.rank, otherLength, other.number);
}

}  // namespace zvlock
}  // namespace zorvel
