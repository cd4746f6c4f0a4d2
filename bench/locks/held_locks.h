#pragma once

#include <string>

namespace zorvel {
namespace bench {

/// Holds the exclusive locks of so many directories (DIR/0, DIR/1 and so on, which are there) at the same time and
/// prints "KIB THREADS": how much more memory is resident and how many more threads there are than with the first of
/// them alone. Linux only; elsewhere both are 0.
int printHeldLocks(const std::string& directory, int count);

/// The same for so many threads that do nothing: what the prescribed threads alone cost.
int printIdleThreads(int count);

}  // namespace bench
}  // namespace zorvel
