#include "examples/zvlock/command.h"

#include "examples/zvlock/windows/command_line.h"

#include <windows.h>

#include <cwchar>

#include <zorvel/errors.h>

namespace zorvel {
namespace zvlock {

namespace {

class Handle
{
public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle()
    {
        if (m_handle)
            CloseHandle(m_handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE get() const { return m_handle; }

private:
    const HANDLE m_handle;
};

/// This program and all that it starts. The last handle goes when this program
/// is killed, and takes the others with it. Where the system refuses it, the
/// command runs without.
class KilledTogether
{
public:
    KilledTogether() : m_job(CreateJobObjectW(nullptr, nullptr))
    {
        limit(JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE);
        AssignProcessToJobObject(m_job.get(), GetCurrentProcess());
    }

    /// What the command left running goes on.
    ~KilledTogether() { limit(0); }

private:
    void limit(DWORD flags)
    {
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION information = {};
        information.BasicLimitInformation.LimitFlags = flags;
        SetInformationJobObject(m_job.get(), JobObjectExtendedLimitInformation, &information, sizeof information);
    }

    const Handle m_job;
};

/// The command interpreter reads the arguments of a batch file by rules of its
/// own, so that they would not arrive as they are.
bool isBatchFile(const std::wstring& name)
{
    const std::size_t dot = name.find_last_of(L'.');
    const wchar_t* const extension = dot == std::wstring::npos ? L"" : name.c_str() + dot;
    return _wcsicmp(extension, L".bat") == 0 || _wcsicmp(extension, L".cmd") == 0;
}

/// With the system's text, where it has one, without the end of the line.
[[noreturn]] void throwCannotStart(DWORD error)
{
    std::string text = zvGetWinErrorMessage(error);
    text.erase(text.find_last_not_of("\r\n ") + 1);
    if (text.empty())
        text = "system error " + std::to_string(error);
    throw CannotStart(error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND, text);
}

HANDLE startProcess(std::wstring line)
{
    STARTUPINFOW startup = STARTUPINFOW();
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = PROCESS_INFORMATION();
    if (!CreateProcessW(nullptr, &line[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &information))
        throwCannotStart(GetLastError());
    CloseHandle(information.hThread);
    return information.hProcess;
}

}  // namespace

struct Command::Process
{
    explicit Process(const std::wstring& line) : handle(startProcess(line)) {}
    ~Process() { WaitForSingleObject(handle.get(), INFINITE); }

    const KilledTogether together;
    const Handle handle;
};

Command::Command() = default;

Command::~Command() = default;

void Command::start(const std::vector<NativeText>& words)
{
    if (words.at(0).empty())
        throwCannotStart(ERROR_FILE_NOT_FOUND);
    if (isBatchFile(words[0]))
        throw CannotStart(true, "a batch file is run by: cmd /c FILE");
    m_process.reset(new Process(commandLineOf(words)));
}

int Command::wait()
{
    DWORD status = 0;
    WaitForSingleObject(m_process->handle.get(), INFINITE);
    GetExitCodeProcess(m_process->handle.get(), &status);
    return static_cast<int>(status);
}

void Command::pass(int) {}

}  // namespace zvlock
}  // namespace zorvel
