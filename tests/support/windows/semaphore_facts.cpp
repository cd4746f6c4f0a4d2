#include "tests/support/semaphore_facts.h"

#include <windows.h>

namespace zorvel {
namespace test {

/// The limit is the system's own: Wine's is lower than that of Windows.
unsigned long whyRefusesName(const std::string& name)
{
    if (name.find('\0') != std::string::npos)
        return ERROR_INVALID_NAME;
    const HANDLE semaphore = CreateSemaphoreA(nullptr, 1, 1, name.c_str());
    if (!semaphore)
        return GetLastError();
    CloseHandle(semaphore);
    return 0;
}

unsigned long codeOfFreeSemaphore()
{
    return ERROR_TOO_MANY_POSTS;
}

unsigned long codeOfClosedHandle()
{
    return ERROR_INVALID_HANDLE;
}

}  // namespace test
}  // namespace zorvel
