#pragma once

#include <memory>

namespace zorvel {
namespace platform {

/// A call that wakes whoever waits for it, once and for good: no later wait
/// lasts. Any thread may call and wait.
class WakeUp
{
public:
    WakeUp();
    ~WakeUp();

    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    void call();
    bool isCalled() const;

    /// Suspends the calling thread for a number of milliseconds (none for zero
    /// or less) by a clock that nobody sets, or until the call, and not at all
    /// after it. A wait may end early. No interruption point of Boost.Thread.
    void wait(long milliseconds);

    /// The same for so many microseconds, as exactly as the system keeps them.
    /// Where that is not to the microsecond a part of a millisecond is no wait.
    void waitExactly(long microseconds);

private:
    struct State;
    const std::unique_ptr<State> m_state;
};

}  // namespace platform
}  // namespace zorvel
