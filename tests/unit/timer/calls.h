#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace zorvel {
namespace test {

/// Something that happens once or more on one thread and is waited for on
/// another.
class Happening
{
public:
    void happen()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_count;
        m_changed.notify_all();
    }

    std::size_t count() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_count;
    }

    /// False after ten seconds.
    bool waitFor(std::size_t times = 1) const
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_count >= times; });
    }

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::size_t m_count = 0;
};

/// What ends a timer from inside its callback.
struct EndOfTimer : std::runtime_error
{
    EndOfTimer() : std::runtime_error("the timer is to end") {}
};

/// Waits until a condition of another thread holds that nobody signals (the
/// flag of a timer, set after its callback has returned). False after ten
/// seconds.
inline bool eventually(const std::function<bool()>& holds)
{
    const std::chrono::steady_clock::time_point end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

}  // namespace test
}  // namespace zorvel
