#include "platform/tick_count.h"

#include <time.h>

namespace zorvel {
namespace platform {

std::uint32_t tickCount()
{
    timespec now;
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                                      static_cast<std::uint64_t>(now.tv_nsec) / 1000000);
}

}  // namespace platform
}  // namespace zorvel
