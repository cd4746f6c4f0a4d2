#include "examples/deploy_demo/progress.h"

namespace zorvel {
namespace demo {

namespace {

const std::chrono::milliseconds onTerminal(100);
const std::chrono::milliseconds inLog(5000);

}  // namespace

Progress::Progress(std::ostream& out, bool terminal)
    : m_out(out), m_terminal(terminal), m_due(std::chrono::steady_clock::now())
{
}

void Progress::show(const std::string& text)
{
    const auto now = std::chrono::steady_clock::now();
    if (now < m_due)
        return;
    m_due = now + (m_terminal ? onTerminal : inLog);
    if (m_terminal)
        m_out << '\r' << text << "\x1b[K" << std::flush;
    else
        m_out << text << std::endl;
}

void Progress::say(const std::string& text)
{
    clear();
    m_out << text << std::endl;
}

void Progress::clear()
{
    if (m_terminal)
        m_out << "\r\x1b[K" << std::flush;
}

}  // namespace demo
}  // namespace zorvel
