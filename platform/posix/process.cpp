#include "platform/process.h"

#include <unistd.h>

namespace zorvel {
namespace platform {

unsigned long processId()
{
    return static_cast<unsigned long>(::getpid());
}

}  // namespace platform
}  // namespace zorvel
