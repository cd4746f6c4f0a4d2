#include "platform/posix/punctual_waits.h"

#include <sys/prctl.h>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

/// Nanoseconds; zero would mean the default of the process.
const unsigned long least = 1;

void setSlack(unsigned long nanoseconds)
{
    ::prctl(PR_SET_TIMERSLACK, nanoseconds, 0ul, 0ul, 0ul);
}

}  // namespace

/// What the application chose is put back: its own waits, in a callback, and the
/// threads that it starts there go by it. Where the system does not tell, 0 or
/// less, nothing is changed.
PunctualWaits::PunctualWaits() : m_slackBefore(0)
{
    const int slack = ::prctl(PR_GET_TIMERSLACK, 0ul, 0ul, 0ul, 0ul);
    if (slack <= static_cast<int>(least))
        return;
    m_slackBefore = static_cast<unsigned long>(slack);
    setSlack(least);
}

PunctualWaits::~PunctualWaits()
{
    if (m_slackBefore != 0)
        setSlack(m_slackBefore);
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
