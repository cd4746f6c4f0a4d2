#pragma once

#include <functional>
#include <memory>

namespace zorvel {
namespace zvlock {

/// A request to end, or whatever the command makes of it.
struct Signal
{
    int number = 0;
    bool sentToAll = false;  ///< by the terminal or console, to every program in it: the command has it already
};

/// While it lives no signal ends this program; each is reported instead.
///
/// Linux: SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1 and SIGUSR2, but for those
/// that were ignored when the program began: they stay ignored. Windows: what
/// the console sends (Ctrl-C as SIGINT, Ctrl-Break as SIGBREAK, the closing of
/// the window as SIGHUP, the end of the session as SIGTERM); after the last two
/// the system allows some seconds for the program to end.
class Signals
{
public:
    using Handler = std::function<void(const Signal&)>;

    /// One object at a time, made before any other thread, which would
    /// otherwise not be protected. The handler runs on a thread of its own and
    /// must not throw. Throws std::system_error.
    explicit Signals(Handler handler);

    /// The handler does not run any more. What came since the program began
    /// and what comes now does not end it either.
    ~Signals();

    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace zvlock
}  // namespace zorvel
