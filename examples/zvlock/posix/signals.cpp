#include "examples/zvlock/signals.h"

#include "examples/zvlock/posix/signal_mask.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <thread>

namespace zorvel {
namespace zvlock {

namespace {

class Descriptor
{
public:
    Descriptor(int number, const char* what) : m_number(number)
    {
        if (number < 0)
            throw std::system_error(errno, std::generic_category(), what);
    }
    ~Descriptor() { ::close(m_number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }

private:
    const int m_number;
};

}  // namespace

class Signals::Impl
{
public:
    explicit Impl(Handler handler)
        : m_handler(std::move(handler)),
          m_reported(blockSignals()),
          m_signals(::signalfd(-1, &m_reported, SFD_CLOEXEC), "signalfd"),
          m_end(::eventfd(0, EFD_CLOEXEC), "eventfd"),
          m_thread([this] { report(); })
    {
    }

    ~Impl()
    {
        const std::uint64_t one = 1;
        while (::write(m_end.number(), &one, sizeof one) < 0 && errno == EINTR) {
        }
        m_thread.join();
    }

private:
    void report()
    {
        pollfd watched[] = {{m_signals.number(), POLLIN, 0}, {m_end.number(), POLLIN, 0}};
        while (!watched[1].revents) {
            if (::poll(watched, 2, -1) > 0 && watched[0].revents)
                take();
        }
    }

    /// What the kernel sends comes from the terminal: a key or its end.
    void take()
    {
        signalfd_siginfo information = {};
        if (::read(m_signals.number(), &information, sizeof information) == sizeof information)
            m_handler({static_cast<int>(information.ssi_signo), information.ssi_code == SI_KERNEL});
    }

    const Handler m_handler;
    const sigset_t m_reported;
    const Descriptor m_signals;
    const Descriptor m_end;
    std::thread m_thread;
};

Signals::Signals(Handler handler) : m_impl(new Impl(std::move(handler))) {}

Signals::~Signals() = default;

}  // namespace zvlock
}  // namespace zorvel
