#include "bench/timers/asio_loop.h"

namespace zorvel {
namespace bench {

AsioLoop::AsioLoop() : m_work(boost::asio::make_work_guard(m_context)), m_thread([this] { m_context.run(); }) {}

AsioLoop::~AsioLoop()
{
    m_context.stop();
    m_thread.join();
}

}  // namespace bench
}  // namespace zorvel
