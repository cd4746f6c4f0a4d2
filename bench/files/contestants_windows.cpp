#include "bench/files/peers_windows.h"

#include <benchmark/benchmark.h>

#include <windows.h>

namespace zorvel {
namespace bench {

namespace {

/// What Wine says of itself, where it is Wine.
std::string systemName()
{
    typedef const char*(CDECL * VersionOfWine)();
    const FARPROC function = GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version");
    const VersionOfWine version = reinterpret_cast<VersionOfWine>(reinterpret_cast<void*>(function));
    return version ? std::string("Wine ") + version() : "Windows";
}

}  // namespace

std::vector<Contestant> contestants()
{
    return {zorvelItself(), standardFilesystem(), win32WithBytes(), win32WithWideCharacters(), bareSteps()};
}

Amounts amounts(bool isQuick)
{
    return isQuick ? Amounts{"wine-", 2500, 500, 0, 3, 3, 5} : Amounts{"wine-", 10000, 2500, 0, 7, 21, 10};
}

void describeContestants()
{
    benchmark::AddCustomContext("files: system", systemName());
    benchmark::AddCustomContext("files: std-filesystem", std::string("libstdc++, MinGW-w64 GCC ") + __VERSION__);
}

}  // namespace bench
}  // namespace zorvel
