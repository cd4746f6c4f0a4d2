#include "platform/uninterrupted_sleep.h"

#include <windows.h>

#include <chrono>

namespace zorvel {
namespace platform {

/// Sleep can end up to a tick of the system's clock early, and goes on then. It
/// needs no objects of the kernel, as a sleep of Boost's does.
void sleepUninterrupted(long milliseconds)
{
    typedef std::chrono::steady_clock Clock;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (Clock::time_point now = Clock::now(); now < end; now = Clock::now())
        Sleep(static_cast<DWORD>(std::chrono::ceil<std::chrono::milliseconds>(end - now).count()));
}

}  // namespace platform
}  // namespace zorvel
