#pragma once

#include <cstdint>

/// In an object file of its own, so that a test program can link another.
namespace zorvel {
namespace platform {

/// Milliseconds since the system was started, modulo 2^32.
std::uint32_t tickCount();

}  // namespace platform
}  // namespace zorvel
