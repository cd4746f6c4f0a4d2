#pragma once

#include <cstdint>

namespace zorvel {
namespace test {

/// fake_tick_count.cpp defines the function of platform/tick_count.h: a test
/// program that lists it among its own sources sets the milliseconds itself.
/// They start at 0. Thread-safe.
void setTickCount(std::uint32_t milliseconds);

}  // namespace test
}  // namespace zorvel
