#include "tests/support/system_facts.h"

#include <windows.h>

#include <cstdlib>

namespace zorvel {
namespace test {

unsigned long codeOfMissingFile()
{
    return ERROR_FILE_NOT_FOUND;
}

unsigned long codeOfDeniedAccess()
{
    return ERROR_ACCESS_DENIED;
}

std::string systemTextOf(unsigned long code)
{
    char text[1024];
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code,
                                        MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text, sizeof text, nullptr);
    return std::string(text, length);
}

bool systemTextsEndWithALine()
{
    return true;
}

void failToOpenAFile()
{
    CreateFileA("no such file", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

void clearLastError()
{
    SetLastError(0);
}

void setLastError(unsigned long code)
{
    SetLastError(code);
}

bool linksAreRemovable()
{
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") == nullptr;
}

bool readOnlyFilesStay()
{
    return true;
}

bool searchesForNothingBegin()
{
    return false;
}

const char* systemLibrary()
{
    return "kernel32.dll";
}

const char* systemSymbol()
{
    return "GetCurrentProcessId";
}

void setEnvironment(const std::string& name, const std::string& value)
{
    _putenv_s(name.c_str(), value.c_str());
}

}  // namespace test
}  // namespace zorvel
