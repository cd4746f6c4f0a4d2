#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace zorvel {
namespace test {

/// Waits for what another thread is to bring about; false after 20 seconds.
inline bool eventually(const std::function<bool()>& holds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace test
}  // namespace zorvel
