#include "platform/modules.h"

#include <windows.h>

#include <psapi.h>

namespace zorvel {
namespace platform {

namespace {

/// Some systems do not terminate what they cut.
std::uint32_t terminated(char* buffer, std::uint32_t size, DWORD length)
{
    if (size != 0 && length >= size)
        buffer[size - 1] = '\0';
    return length;
}

}  // namespace

void* currentProcess()
{
    return ::GetCurrentProcess();
}

bool listModules(void* process, void** modules, std::uint32_t size, std::uint32_t& needed)
{
    DWORD bytes = 0;
    if (!::EnumProcessModules(process, reinterpret_cast<HMODULE*>(modules), size, &bytes))
        return false;
    needed = bytes;
    return true;
}

std::uint32_t moduleFileName(void* process, void* module, char* buffer, std::uint32_t size)
{
    return terminated(buffer, size, ::GetModuleFileNameExA(process, static_cast<HMODULE>(module), buffer, size));
}

std::uint32_t moduleFileName(void* module, char* buffer, std::uint32_t size)
{
    return terminated(buffer, size, ::GetModuleFileNameA(static_cast<HMODULE>(module), buffer, size));
}

}  // namespace platform
}  // namespace zorvel
