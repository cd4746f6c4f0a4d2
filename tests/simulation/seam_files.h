#pragma once

#include <string>

namespace zorvel {
namespace sim {

/// The last component of a path; empty for the directory itself.
std::string fileOf(const char* path);

}  // namespace sim
}  // namespace zorvel
