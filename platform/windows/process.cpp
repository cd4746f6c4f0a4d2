#include "platform/process.h"

#include <windows.h>

namespace zorvel {
namespace platform {

unsigned long processId()
{
    return ::GetCurrentProcessId();
}

}  // namespace platform
}  // namespace zorvel
