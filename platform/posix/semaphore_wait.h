#pragma once

#include "platform/posix/semaphore_file.h"

namespace zorvel {
namespace platform {
namespace posix {

/// Takes one off the count, if it is not 0.
inline bool take(SharedSemaphore& semaphore)
{
    std::uint32_t count = semaphore.count;
    while (count > 0) {
        if (semaphore.count.compare_exchange_weak(count, count - 1))
            return true;
    }
    return false;
}

/// Takes one off the count of a semaphore that was found taken, as soon as somebody gives it back, for at most so many
/// milliseconds: as waitForSemaphore(). Looks for a moment at first (see SemaphorePatience), then sleeps.
unsigned long waitForTaken(SemaphoreFile& file, unsigned long milliseconds);

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
