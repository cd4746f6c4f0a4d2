#include "tests/support/windows/host.h"

#include "tests/support/windows/command_line.h"

#include <windows.h>

#include <cstring>
#include <stdexcept>

namespace zorvel {
namespace test {
namespace native {

namespace {

void check(bool done, const std::string& what)
{
    if (!done)
        throw std::runtime_error(what + ": system error " + std::to_string(GetLastError()));
}

typedef char*(CDECL* Translate)(const WCHAR* path);

/// Wine's kernel32 has it, Windows' has not.
Translate translator()
{
    const FARPROC found = GetProcAddress(GetModuleHandleA("kernel32"), "wine_get_unix_file_name");
    check(found != nullptr, "wine_get_unix_file_name");
    Translate translate;
    std::memcpy(&translate, &found, sizeof translate);
    return translate;
}

std::string quotedForShell(const std::string& text)
{
    std::string result(1, '\'');
    for (const char character : text)
        result += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return result += '\'';
}

std::wstring fromUtf8(const std::string& text)
{
    std::wstring result(text.size(), L'\0');
    const int size = static_cast<int>(text.size());
    result.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, &result[0], size)));
    return result;
}

/// Wine gives no handle to wait on for a program of the host.
void startOnHost(const std::string& script)
{
    std::wstring line = commandLine({L"/bin/sh", L"-c", fromUtf8(script)});
    STARTUPINFOW startup = STARTUPINFOW();
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information;
    check(CreateProcessW(nullptr, &line[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &information),
          script);
}

void waitForFile(const std::string& path)
{
    const ULONGLONG limit = GetTickCount64() + 20000;
    while (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        check(GetTickCount64() < limit, path);
        Sleep(1);
    }
}

}  // namespace

std::string hostPath(const std::string& path)
{
    char* const translated = translator()(wide(path).c_str());
    check(translated != nullptr, path);
    const std::string result = quotedForShell(translated);
    HeapFree(GetProcessHeap(), 0, translated);
    return result;
}

/// The end shows in a marker file, which the shell makes last and this side
/// removes.
void runOnHost(const std::string& script)
{
    static unsigned count = 0;
    char directory[MAX_PATH + 1];
    check(GetTempPathA(sizeof directory, directory) > 0, "GetTempPath");
    const std::string marker =
        directory + ("zorvel-host-" + std::to_string(GetCurrentProcessId())) + '-' + std::to_string(++count);
    startOnHost(script + "; : > " + hostPath(marker));
    waitForFile(marker);
    DeleteFileA(marker.c_str());
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
