#include "tests/support/fake_tick_count.h"

#include "platform/tick_count.h"

#include <atomic>

namespace {

std::atomic<std::uint32_t> ticks(0);

}  // namespace

namespace zorvel {

namespace test {

void setTickCount(std::uint32_t milliseconds)
{
    ticks = milliseconds;
}

}  // namespace test

namespace platform {

std::uint32_t tickCount()
{
    return ticks;
}

}  // namespace platform
}  // namespace zorvel
