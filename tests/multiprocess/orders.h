#pragma once

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

#include <functional>
#include <queue>
#include <string>

namespace zorvel {
namespace test {

/// The lines of the standard input, read on a thread of their own, so that
/// "sync" is answered at once whatever the worker does. Any other line is kept
/// for next(), up to "stop" or the end.
class Orders
{
public:
    explicit Orders(const std::function<void()>& sync);
    /// Waits for "stop" or the end.
    ~Orders();

    /// Waits; false after "stop".
    bool next(std::string& line);
    bool stopped() const;

private:
    void listen();
    void keep(const std::string& line);

    const std::function<void()> m_sync;
    std::queue<std::string> m_lines;
    bool m_stopped = false;
    mutable boost::mutex m_mutex;
    boost::condition_variable m_changed;
    boost::thread m_listener;
};

}  // namespace test
}  // namespace zorvel
