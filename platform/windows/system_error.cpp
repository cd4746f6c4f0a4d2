#include "platform/system_error.h"

#include <windows.h>

namespace zorvel {
namespace platform {

unsigned long lastError()
{
    return ::GetLastError();
}

std::string systemErrorText(unsigned long code)
{
    // Without FORMAT_MESSAGE_IGNORE_INSERTS on purpose: a text that wants
    // inserts is one we cannot complete, and comes out empty.
    char* text = nullptr;
    const DWORD length =
        ::FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code,
                         MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&text), 0, nullptr);
    if (length == 0)
        return std::string();
    const std::string message(text, length);
    ::LocalFree(text);
    return message;
}

}  // namespace platform
}  // namespace zorvel
