#include "platform/loader.h"

#include <windows.h>

namespace zorvel {
namespace platform {

void* loadLibrary(const char* path)
{
    return path ? ::LoadLibraryA(path) : nullptr;
}

void* findSymbol(void* library, const char* symbol)
{
    if (!library || !symbol)
        return nullptr;
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(library), symbol));
}

bool unloadLibrary(void* library)
{
    return library && ::FreeLibrary(static_cast<HMODULE>(library)) != FALSE;
}

}  // namespace platform
}  // namespace zorvel
