#include "platform/thread_end.h"

#include <windows.h>

namespace zorvel {
namespace platform {

bool hasEnded(boost::thread::native_handle_type thread)
{
    return ::WaitForSingleObject(thread, 0) == WAIT_OBJECT_0;
}

}  // namespace platform
}  // namespace zorvel
