#pragma once

#include <string>
#include <vector>

namespace zorvel {
namespace zvlock {

/// One line that a program's start-up code splits into the words again.
std::wstring commandLineOf(const std::vector<std::wstring>& words);

}  // namespace zvlock
}  // namespace zorvel
