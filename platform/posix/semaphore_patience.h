#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>

namespace zorvel {
namespace platform {
namespace posix {

/// Whether to look at a taken semaphore for a moment before going to sleep. That pays where whoever has it runs on
/// another processor and is about to give it back: to be woken there takes longer than the moment. A look must last
/// as long as the other one may take to be woken, or two that hand a semaphore to and fro never meet awake. After a
/// look that did not help those who wait go to sleep at once for a while: at first for a hundred times as long as it
/// took, then for twice as long each time, until one helps.
///
/// Of one open semaphore in one process. Thread-safe; threads that meet may look once too often.
class SemaphorePatience
{
public:
    /// Of any clock that goes on; zero is before all.
    typedef std::chrono::nanoseconds Time;

    static constexpr Time longestLook = std::chrono::microseconds(100);
    static constexpr Time shortestPause = 100 * longestLook;
    static constexpr Time longestPause = std::chrono::seconds(1);

    bool shouldLookAt(Time now) const { return now >= m_next.load(std::memory_order_relaxed); }

    void helped()
    {
        if (m_pause.load(std::memory_order_relaxed) != shortestPause)
            m_pause.store(shortestPause, std::memory_order_relaxed);
    }

    void didNotHelpAt(Time now)
    {
        const Time pause = m_pause.load(std::memory_order_relaxed);
        m_next.store(now + pause, std::memory_order_relaxed);
        m_pause.store(std::min(2 * pause, longestPause), std::memory_order_relaxed);
    }

private:
    std::atomic<Time> m_next{Time::zero()};
    std::atomic<Time> m_pause{shortestPause};
};

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
