#include "tests/multiprocess/orders.h"

#include <boost/thread/lock_guard.hpp>

#include <iostream>

namespace zorvel {
namespace test {

Orders::Orders(const std::function<void()>& sync) : m_sync(sync)
{
    // Reading would flush an output that another thread writes to.
    std::cin.tie(nullptr);
    m_listener = boost::thread([this] { listen(); });
}

Orders::~Orders()
{
    m_listener.join();
}

void Orders::listen()
{
    std::string line;
    while (std::getline(std::cin, line) && line != "stop") {
        if (line == "sync")
            m_sync();
        else
            keep(line);
    }
    const boost::lock_guard<boost::mutex> lock(m_mutex);
    m_stopped = true;
    m_changed.notify_all();
}

void Orders::keep(const std::string& line)
{
    const boost::lock_guard<boost::mutex> lock(m_mutex);
    m_lines.push(line);
    m_changed.notify_all();
}

bool Orders::next(std::string& line)
{
    boost::unique_lock<boost::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_stopped || !m_lines.empty(); });
    if (m_lines.empty())
        return false;
    line = m_lines.front();
    m_lines.pop();
    return true;
}

bool Orders::stopped() const
{
    const boost::lock_guard<boost::mutex> lock(m_mutex);
    return m_stopped;
}

}  // namespace test
}  // namespace zorvel
