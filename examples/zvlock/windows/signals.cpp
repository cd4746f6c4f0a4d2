#include "examples/zvlock/signals.h"

#include <windows.h>

#include <csignal>
#include <mutex>
#include <system_error>

namespace zorvel {
namespace zvlock {

namespace {

const int hangUp = 1;  ///< the number of SIGHUP elsewhere; this system's C library has no name for it

/// The handler of the one object there is. The system calls on threads of its
/// own, also while the object goes.
std::mutex handlerMutex;
const Signals::Handler* handlerNow = nullptr;

int numberOf(DWORD event)
{
    switch (event) {
    case CTRL_C_EVENT: return SIGINT;
    case CTRL_BREAK_EVENT: return SIGBREAK;
    case CTRL_CLOSE_EVENT: return hangUp;
    default: return SIGTERM;
    }
}

/// After these the system ends the program as soon as it is answered.
bool isFinal(DWORD event)
{
    return event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT;
}

BOOL WINAPI onConsoleEvent(DWORD event)
{
    {
        const std::lock_guard<std::mutex> guard(handlerMutex);
        if (handlerNow)
            (*handlerNow)({numberOf(event), true});
    }
    if (isFinal(event))
        Sleep(INFINITE);
    return TRUE;
}

}  // namespace

class Signals::Impl
{
public:
    explicit Impl(Handler handler) : m_handler(std::move(handler))
    {
        set(&m_handler);
        if (!SetConsoleCtrlHandler(onConsoleEvent, TRUE))
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "SetConsoleCtrlHandler");
    }

    ~Impl() { set(nullptr); }

private:
    static void set(const Handler* handler)
    {
        const std::lock_guard<std::mutex> guard(handlerMutex);
        handlerNow = handler;
    }

    const Handler m_handler;
};

Signals::Signals(Handler handler) : m_impl(new Impl(std::move(handler))) {}

Signals::~Signals() = default;

}  // namespace zvlock
}  // namespace zorvel
