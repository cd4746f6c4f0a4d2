#pragma once

#include <cstddef>
#include <cstdint>

namespace zorvel {
namespace platform {
namespace posix {

/// A page of the process's memory at which one semaphore after another can be
/// seen, and the handle of the one that is open there.
///
/// A place is never unmapped. Between two semaphores it is empty memory, all 0.
/// So a semaphore is found by its handle, and used, without a lock against the
/// thread that is just closing it: that one may at worst be met as a semaphore
/// of count 0 and maximum 0, which gives nothing and takes nothing.
///
/// A handle is the address of the place and, in the bits that no address has,
/// how often the place was taken. It is not given twice before the place was
/// taken half a billion times. A place that was given up is not taken again
/// before some hundreds of others were.
class SemaphorePlace
{
public:
    static const std::size_t size = 4096;

    /// A place of its own for the caller; null, with errno, when there is no
    /// memory. Thread-safe.
    static void* take();

    /// Empties a place and gives it up. Never fails: a place that cannot be
    /// emptied stays as it is and is not used again. Thread-safe.
    static void giveUp(void* place);

    /// Makes and opens the handle of a place that is taken.
    static void* openHandle(void* place);

    /// From here on the handle leads nowhere.
    static void closeHandle(void* handle);

    /// The place of a handle that is open, null for any other that was given
    /// once, and for null. Takes no lock. Thread-safe.
    static void* of(void* handle);
};

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
