#include "platform/semaphore.h"

#include <windows.h>

namespace zorvel {
namespace platform {

static_assert(waitForever == INFINITE && waitSucceeded == WAIT_OBJECT_0 && waitAbandoned == WAIT_ABANDONED &&
                  waitTimedOut == WAIT_TIMEOUT && waitFailed == WAIT_FAILED,
              "the values are the system's");

void* createSemaphore(const std::string& name, long initialCount, long maximumCount)
{
    if (name.find('\0') != std::string::npos) {
        ::SetLastError(ERROR_INVALID_NAME);
        return nullptr;
    }
    return ::CreateSemaphoreA(nullptr, initialCount, maximumCount, name.c_str());
}

unsigned long waitForSemaphore(void* handle, unsigned long milliseconds)
{
    return ::WaitForSingleObject(handle, milliseconds);
}

bool releaseSemaphore(void* handle)
{
    return ::ReleaseSemaphore(handle, 1, nullptr) != FALSE;
}

int closeSemaphore(void* handle)
{
    return ::CloseHandle(handle);
}

}  // namespace platform
}  // namespace zorvel
