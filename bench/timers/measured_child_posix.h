#pragma once

#include <functional>
#include <vector>

namespace zorvel {
namespace bench {

/// The numbers that a function gives in a child of this process; the function may leave threads behind. Ends the
/// program where that fails.
std::vector<double> measuredInChild(const std::function<std::vector<double>()>& measure);

}  // namespace bench
}  // namespace zorvel
