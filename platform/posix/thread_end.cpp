#include "platform/thread_end.h"

#include <pthread.h>
#include <time.h>

namespace zorvel {
namespace platform {

/// The C library answers from its own memory, where the system marks the end
/// of a thread. (One that did not look would never tell of an end.)
bool hasEnded(boost::thread::native_handle_type thread)
{
    clockid_t clock = 0;
    return pthread_getcpuclockid(thread, &clock) != 0;
}

}  // namespace platform
}  // namespace zorvel
