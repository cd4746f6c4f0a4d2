#include "suite/qx.h"

#include "platform/loader.h"

void* qxLoadLibrary(const char* path, void**)
{
    return zorvel::platform::loadLibrary(path);
}

void* qxFindSymbolInLibrary(void* library, const char* symbol)
{
    return zorvel::platform::findSymbol(library, symbol);
}

int qxUnloadLibrary(void* library)
{
    return zorvel::platform::unloadLibrary(library) ? 0 : -1;
}
