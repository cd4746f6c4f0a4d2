#include "ipc/detail/semaphore_name.h"

#include <boost/algorithm/string/replace.hpp>

namespace zorvel {
namespace ipc {

/// In this order the escaping can be undone: no '_' that a later pass writes is
/// doubled. Without it a '\' would name a namespace of the system's objects.
std::string escapedName(const std::string& name)
{
    std::string escaped = name;
    boost::algorithm::replace_all(escaped, "_", "__");
    boost::algorithm::replace_all(escaped, "\\", "_s");
    boost::algorithm::replace_all(escaped, ":", "_c");
    return escaped;
}

}  // namespace ipc
}  // namespace zorvel
