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

std::optional<std::string> textBehind(const std::string& prefix, const std::string& name)
{
    if (name.compare(0, prefix.size(), prefix) != 0)
        return std::nullopt;
    return name.substr(prefix.size());
}

bool isNumber(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

std::optional<LockName> lockNameOf(const std::string& name)
{
    if (name == ".deploy_write_lock")
        return LockName{writer, "writer", "-"};
    // Not only those with a number: a writer waits for whatever begins so.
    if (const auto number = textBehind(".deploy_read_lock.", name))
        return LockName{reader, "reader", number->empty() ? "-" : *number};
    const auto level = textBehind(".deploy_lock.", name);
    if (!level || !isNumber(*level))
        return std::nullopt;
    return *level == "0" ? LockName{exclusive, "exclusive", *level} : LockName{queued, "queued", *level};
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
