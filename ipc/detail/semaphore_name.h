#pragma once

#include <string>

namespace zorvel {
namespace ipc {

/// The name of the system's object: '_' becomes "__", '\' "_s" and ':' "_c".
std::string escapedName(const std::string& name);

}  // namespace ipc
}  // namespace zorvel
