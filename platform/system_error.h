#pragma once

#include <string>

namespace zorvel {
namespace platform {

/// The calling thread's last error: GetLastError on Windows, errno on Linux.
unsigned long lastError();

/// The system's text for a code, as it gives it; empty when it knows none.
std::string systemErrorText(unsigned long code);

}  // namespace platform
}  // namespace zorvel
