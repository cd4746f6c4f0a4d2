#include "platform/uninterrupted_sleep.h"

#include <chrono>
#include <thread>

namespace zorvel {
namespace platform {

namespace {

typedef std::chrono::steady_clock Clock;

/// The system may wake a sleeper so much late, to save itself a wake-up, and
/// where nothing else happens it does; to be asked for less is no burden to it.
const Clock::duration usualDelay = std::chrono::microseconds(50);

}  // namespace

/// By the clock that Boost's sleep goes by too; nearly always one system call.
void sleepUninterrupted(long milliseconds)
{
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds) - usualDelay);
    for (Clock::time_point now = Clock::now(); now < end; now = Clock::now())
        std::this_thread::sleep_for(end - now);
}

}  // namespace platform
}  // namespace zorvel
