#pragma once

#include "bench/support/row_file.h"

namespace zorvel {
namespace bench {

/// What 200 timers that wait take, and fewer: resident memory and threads. Each number in a process of its own.
void measureMemory(RowFile& rows, int rounds);

/// How late the calls of a timer with a period of 10 ms come, beside as many busy processes as there are processors.
void measurePunctuality(RowFile& rows, int rounds);

}  // namespace bench
}  // namespace zorvel
