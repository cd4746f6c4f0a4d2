#include "platform/thread_end.h"

#include <windows.h>

namespace zorvel {
namespace platform {

bool hasEnded(boost::thread& thread)
{
    return ::WaitForSingleObject(thread.native_handle(), 0) == WAIT_OBJECT_0;
}

}  // namespace platform
}  // namespace zorvel
