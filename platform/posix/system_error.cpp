#include "platform/system_error.h"

#include <cerrno>
#include <cstring>

namespace zorvel {
namespace platform {

unsigned long lastError()
{
    return static_cast<unsigned long>(errno);
}

std::string systemErrorText(unsigned long code)
{
    // The description table knows which codes exist; the text comes in the
    // locale's language.
    if (code > 4096 || !::strerrordesc_np(static_cast<int>(code)))
        return std::string();
    char buffer[256];
    return ::strerror_r(static_cast<int>(code), buffer, sizeof buffer);
}

}  // namespace platform
}  // namespace zorvel
