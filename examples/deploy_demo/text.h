#pragma once

#include "examples/deploy_demo/event.h"

#include <string>
#include <vector>

namespace zorvel {
namespace demo {

bool beginsWith(const std::string& text, const std::string& beginning);

/// "28.87 s" for two decimals.
std::string seconds(Microseconds duration, int decimals);

/// "A, B and C"
std::string enumeration(const std::vector<std::string>& names);

}  // namespace demo
}  // namespace zorvel
