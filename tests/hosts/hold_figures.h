#pragma once

#include "tests/multiprocess/holds.h"

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// How often each of so many workers had held when the first of them was
/// through with all of its holds: the fewest of the others.
int fewestWhenTheFirstWasThrough(const std::vector<Hold>& holds, int workers);

/// The largest number of others' holds between two of one worker's, or before
/// its first.
int longestWait(const std::vector<Hold>& holds, int workers);

}  // namespace test
}  // namespace zorvel
