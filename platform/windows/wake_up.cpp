#include "platform/wake_up.h"

#include <windows.h>

#include <atomic>

namespace zorvel {
namespace platform {

/// The system's own lock and condition need no objects of the kernel. Boost's
/// have several for each thread that waits, made and closed with every wait.
struct WakeUp::State
{
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE called = CONDITION_VARIABLE_INIT;
    std::atomic<bool> isCalled{false};
};

WakeUp::WakeUp() : m_state(new State) {}

WakeUp::~WakeUp() = default;

void WakeUp::call()
{
    AcquireSRWLockExclusive(&m_state->lock);
    m_state->isCalled = true;
    ReleaseSRWLockExclusive(&m_state->lock);
    WakeAllConditionVariable(&m_state->called);
}

bool WakeUp::isCalled() const
{
    return m_state->isCalled;
}

void WakeUp::wait(long milliseconds)
{
    if (milliseconds <= 0)
        return;
    AcquireSRWLockExclusive(&m_state->lock);
    if (!m_state->isCalled)
        SleepConditionVariableSRW(&m_state->called, &m_state->lock, static_cast<DWORD>(milliseconds), 0);
    ReleaseSRWLockExclusive(&m_state->lock);
}

void WakeUp::waitExactly(long microseconds)
{
    wait(microseconds / 1000);
}

}  // namespace platform
}  // namespace zorvel
