#pragma once

namespace zorvel {
namespace test {

/// Blocks of memory that are in use: those that the program's own objects had
/// from malloc() and realloc(), and, where operator new is counted as well
/// (ZORVEL_COUNT_NEW), all of C++. Thread-safe.
long blocksInUse();

}  // namespace test
}  // namespace zorvel
