#pragma once

#include "examples/zvlock/arguments.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <optional>
#include <string>
#include <vector>

namespace zorvel {
namespace zvlock {

enum class Kind
{
    read,
    write,
    exclusive,
};

/// What the user wants.
struct Options
{
    Kind kind = Kind::write;
    boost::posix_time::time_duration limit = boost::posix_time::pos_infin;  ///< how long to wait for the lock
    bool status = false;                                                    ///< list, instead of running a command
    std::string directory;
    std::vector<NativeText> command;
};

/// The shortest limit that a lock of the kind can keep: a shorter one counts as
/// this.
boost::posix_time::time_duration shortestLimit(Kind kind);

/// Empty when there is nothing to do but to end with `status`: help was asked
/// for and written, or the arguments were wrong and the user was told.
std::optional<Options> optionsOf(const std::vector<NativeText>& arguments, int& status);

}  // namespace zvlock
}  // namespace zorvel
