#pragma once

#include <zorvel/dirlock.h>

#include "platform/clock.h"

namespace zorvel {
namespace dirlock {

/// The turns of one acquire at its guard, which is free again at the end of
/// the scope, however it is left.
class GuardTurn
{
public:
    explicit GuardTurn(zvDirectoryExclusiveLock& guard) : m_guard(guard) {}
    ~GuardTurn() { end(); }

    GuardTurn(const GuardTurn&) = delete;
    GuardTurn& operator=(const GuardTurn&) = delete;

    /// Waits for the guard until a deadline on the local clock. Whether it came
    /// is not looked at, on purpose: whoever has waited until its deadline
    /// still takes a look and goes on without the guard.
    void begin(const boost::posix_time::ptime& deadline) { m_guard.acquire(deadline - platform::localTime(), false); }

    /// Without effect when the guard did not come.
    void end() { m_guard.release(); }

private:
    zvDirectoryExclusiveLock& m_guard;
};

}  // namespace dirlock
}  // namespace zorvel
