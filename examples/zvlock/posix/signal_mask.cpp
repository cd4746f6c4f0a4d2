#include "examples/zvlock/posix/signal_mask.h"

#include <initializer_list>

namespace zorvel {
namespace zvlock {

namespace {

sigset_t maskNow()
{
    sigset_t mask;
    ::sigemptyset(&mask);
    ::pthread_sigmask(SIG_BLOCK, nullptr, &mask);
    return mask;
}

/// As after nohup, or in the background of a shell without job control.
bool isIgnored(int signal)
{
    struct sigaction action = {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

const sigset_t& signalMaskAtStart()
{
    static const sigset_t mask = maskNow();
    return mask;
}

sigset_t blockSignals()
{
    signalMaskAtStart();
    sigset_t reported;
    ::sigemptyset(&reported);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2})
        if (!isIgnored(signal))
            ::sigaddset(&reported, signal);
    ::pthread_sigmask(SIG_BLOCK, &reported, nullptr);
    return reported;
}

}  // namespace zvlock
}  // namespace zorvel
