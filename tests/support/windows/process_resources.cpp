#include "tests/support/process_resources.h"

#include <windows.h>

#include <tlhelp32.h>

#include <cstring>

namespace zorvel {
namespace test {

namespace {

std::size_t threadsOfThisProcess()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry;
    entry.dwSize = sizeof entry;
    std::size_t count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry))
        count += entry.th32OwnerProcessID == GetCurrentProcessId();
    CloseHandle(snapshot);
    return count;
}

}  // namespace

/// Descriptors are handles here.
ProcessResources processResources()
{
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return {handles, threadsOfThisProcess()};
}

void writeAtOnce(const char* text)
{
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
}

}  // namespace test
}  // namespace zorvel
