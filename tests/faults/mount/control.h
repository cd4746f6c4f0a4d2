#pragma once

#include <atomic>
#include <cstdint>

/// A page that the fault mount and whoever gives it orders share as a file.
/// The orders are read with every operation.
namespace zorvel {
namespace test {
namespace fault_mount {

/// What the kernel asks of the mount. `getattr` is also each step of finding a
/// path; `create` is an open that makes a file. A close is `flush`.
enum Operation
{
    getattr,
    readlink,
    mkdir,
    unlink,
    rmdir,
    symlink,
    rename,
    chmod,
    truncate,
    utimens,
    open,
    create,
    read,
    write,
    flush,
    fsync,
    opendir,
    readdir,
    statfs,
    operationCount
};

const char* const operationNames[operationCount] = {"getattr", "readlink", "mkdir",   "unlink",   "rmdir",
                                                    "symlink", "rename",   "chmod",   "truncate", "utimens",
                                                    "open",    "create",   "read",    "write",    "flush",
                                                    "fsync",   "opendir",  "readdir", "statfs"};

/// While `isArmed` is set operations are counted, and the call number `call`
/// (from 1) of `operation`, once or with all that follow, takes `delay`
/// microseconds longer and gives `code`, unless that is 0: instead of what it
/// was to do, or after it was done.
struct Control
{
    std::atomic<std::uint32_t> isArmed;
    std::atomic<std::uint32_t> operation;
    std::atomic<std::uint32_t> call;
    std::atomic<std::uint32_t> isForEver;
    std::atomic<std::uint32_t> isDone;
    std::atomic<std::uint32_t> code;
    std::atomic<std::uint32_t> delay;
    /// "For ever" is this many at most: what has no limit at all comes to its end.
    std::atomic<std::uint32_t> limit;
    std::atomic<std::uint32_t> hits;
    std::atomic<std::uint32_t> counts[operationCount];
    /// Set to end the mount; the operation after that ends it.
    std::atomic<std::uint32_t> isOver;
};

}  // namespace fault_mount
}  // namespace test
}  // namespace zorvel
