#pragma once

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <thread>

namespace zorvel {
namespace bench {

/// An io_context that one thread runs: how Boost.Asio's timers are used.
class AsioLoop
{
public:
    AsioLoop();
    ~AsioLoop();

    AsioLoop(const AsioLoop&) = delete;
    AsioLoop& operator=(const AsioLoop&) = delete;

    boost::asio::io_context& context() { return m_context; }

private:
    boost::asio::io_context m_context;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work;
    std::thread m_thread;
};

}  // namespace bench
}  // namespace zorvel
