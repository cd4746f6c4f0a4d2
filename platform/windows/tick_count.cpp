#include "platform/tick_count.h"

#include <windows.h>

namespace zorvel {
namespace platform {

std::uint32_t tickCount()
{
    return ::GetTickCount();
}

}  // namespace platform
}  // namespace zorvel
