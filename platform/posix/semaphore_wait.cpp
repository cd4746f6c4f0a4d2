#include "platform/posix/semaphore_wait.h"

#include "platform/semaphore.h"

#include <boost/smart_ptr/detail/sp_thread_pause.hpp>

#include <algorithm>
#include <chrono>
#include <ctime>

#include <errno.h>
#include <linux/futex.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

typedef std::chrono::steady_clock Clock;

/// A process may be killed after it gave the semaphore back and before it woke a
/// sleeper, or when it was woken and before it took the semaphore. The others
/// then find out by looking themselves.
const Clock::duration longestSleep = std::chrono::seconds(1);

/// Sleeps while the count is 0, until somebody releases it or the time is over.
/// False when the system refuses.
bool sleepWhileTaken(SharedSemaphore& semaphore, Clock::duration time)
{
    const auto nanoseconds = std::chrono::nanoseconds(time).count();
    const timespec limit = {nanoseconds / 1000000000, nanoseconds % 1000000000};
    return ::syscall(SYS_futex, &semaphore.count, FUTEX_WAIT, 0, &limit, nullptr, 0) == 0 || errno == EAGAIN ||
           errno == EINTR || errno == ETIMEDOUT;
}

unsigned long takeOrSleep(SharedSemaphore& semaphore)
{
    while (!take(semaphore)) {
        if (!sleepWhileTaken(semaphore, longestSleep))
            return waitFailed;
    }
    return waitSucceeded;
}

unsigned long takeOrSleep(SharedSemaphore& semaphore, std::chrono::milliseconds limit)
{
    const Clock::time_point begin = Clock::now();
    while (!take(semaphore)) {
        const Clock::duration left = limit - (Clock::now() - begin);
        if (left <= Clock::duration::zero())
            return waitTimedOut;
        if (!sleepWhileTaken(semaphore, std::min(left, longestSleep)))
            return waitFailed;
    }
    return waitSucceeded;
}

/// Looks for at most SemaphorePatience::longestLook.
bool takeWithinLook(SharedSemaphore& semaphore)
{
    const int looksAtOnce = 12;
    const Clock::time_point begin = Clock::now();
    do {
        for (int i = 0; i < looksAtOnce; ++i) {
            if (take(semaphore))
                return true;
            boost::detail::sp_thread_pause();
        }
        ::sched_yield();
    } while (Clock::now() - begin < SemaphorePatience::longestLook);
    return false;
}

/// To some milliseconds, and cheap.
SemaphorePatience::Time roughTime()
{
    timespec now;
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

/// Before anybody is told that here is somebody to be woken.
bool takeSoon(SharedSemaphore& semaphore, SemaphorePatience& patience)
{
    if (!patience.shouldLookAt(roughTime()))
        return false;
    const bool isTaken = takeWithinLook(semaphore);
    if (isTaken)
        patience.helped();
    else
        patience.didNotHelpAt(roughTime());
    return isTaken;
}

unsigned long waitInLine(SharedSemaphore& semaphore, unsigned long milliseconds)
{
    ++semaphore.sleepers;
    const unsigned long result = milliseconds == waitForever
                                     ? takeOrSleep(semaphore)
                                     : takeOrSleep(semaphore, std::chrono::milliseconds(milliseconds));
    --semaphore.sleepers;
    return result;
}

}  // namespace

unsigned long waitForTaken(SemaphoreFile& file, unsigned long milliseconds)
{
    return takeSoon(file.shared(), file.patience()) ? waitSucceeded : waitInLine(file.shared(), milliseconds);
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
