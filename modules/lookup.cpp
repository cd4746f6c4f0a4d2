#include <zorvel/modules.h>

char* zvGetLoadedModuleFullPath(char* outPath, const char* name, const char** symbols, std::size_t symbolCount)
{
    zvLoadedModuleNameChecker checker(outPath, name, symbols, symbolCount);
    const zvLoadedModuleList modules;
    const zvLoadedModuleListIterator end = modules.end();
    for (zvLoadedModuleListIterator module = modules.begin(); module != end; ++module) {
        if (checker(*module))
            break;
    }
    return checker.getModuleFullPath();
}
