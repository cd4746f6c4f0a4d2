#include "platform/wake_up.h"

#include "platform/posix/punctual_waits.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <cstdint>

namespace zorvel {
namespace platform {

namespace {

const std::uint32_t nobodyWaits = 0;
const std::uint32_t somebodyMayWait = 1;
const std::uint32_t called = 2;

}  // namespace

/// A word that the system lets threads sleep at. Once somebody has slept there
/// it says so until the call: others may sleep there too.
struct WakeUp::State
{
    std::atomic<std::uint32_t> word{nobodyWaits};

    void sleep(const timespec& limit);
};

void WakeUp::State::sleep(const timespec& limit)
{
    std::uint32_t before = nobodyWaits;
    if (word.compare_exchange_strong(before, somebodyMayWait) || before == somebodyMayWait)
        ::syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, somebodyMayWait, &limit, nullptr, 0);
}

WakeUp::WakeUp() : m_state(new State) {}

WakeUp::~WakeUp() = default;

void WakeUp::call()
{
    if (m_state->word.exchange(called) == somebodyMayWait)
        ::syscall(SYS_futex, &m_state->word, FUTEX_WAKE_PRIVATE, INT_MAX, nullptr, nullptr, 0);
}

bool WakeUp::isCalled() const
{
    return m_state->word == called;
}

void WakeUp::wait(long milliseconds)
{
    if (milliseconds > 0)
        m_state->sleep({milliseconds / 1000, milliseconds % 1000 * 1000000});
}

void WakeUp::waitExactly(long microseconds)
{
    if (microseconds <= 0)
        return;
    const posix::PunctualWaits punctual;
    m_state->sleep({microseconds / 1000000, microseconds % 1000000 * 1000});
}

}  // namespace platform
}  // namespace zorvel
