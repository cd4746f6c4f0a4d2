#include "tests/support/windows/fake_console.h"

#include <windows.h>

namespace {

unsigned codePage = 0;

BOOL WINAPI consoleMode(HANDLE, LPDWORD mode)
{
    *mode = 0;
    return codePage != 0;
}

UINT WINAPI consoleOutputCodePage()
{
    return codePage;
}

}  // namespace

/// The cells through which a program calls the system's functions; those of the
/// import library are not linked when somebody else has them.
extern "C" {
BOOL(WINAPI* __imp_GetConsoleMode)(HANDLE, LPDWORD) = &consoleMode;
UINT(WINAPI* __imp_GetConsoleOutputCP)() = &consoleOutputCodePage;
}

namespace zorvel {
namespace test {

FakeConsole::FakeConsole(unsigned outputCodePage)
{
    codePage = outputCodePage;
}

FakeConsole::~FakeConsole()
{
    codePage = 0;
}

}  // namespace test
}  // namespace zorvel
