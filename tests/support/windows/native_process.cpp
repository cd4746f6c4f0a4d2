#include "tests/support/native_process.h"

#include "tests/support/windows/command_line.h"

#include <windows.h>

#include <cwchar>
#include <mutex>
#include <stdexcept>

/// The C start-up code would otherwise expand `*` and `?` in the arguments of
/// a child, which are often patterns.
extern "C" {
int _dowildcard = 0;
}

namespace zorvel {
namespace test {
namespace native {

namespace {

/// The status of a killed child, the same as on the other system.
const UINT killedStatus = 128 + 9;

void check(bool done, const std::string& what)
{
    if (!done)
        throw std::runtime_error(what + ": system error " + std::to_string(GetLastError()));
}

std::wstring lineOf(const std::vector<std::string>& command)
{
    std::vector<std::wstring> arguments;
    for (const std::string& argument : command)
        arguments.push_back(wide(argument));
    return commandLine(arguments);
}

bool names(const std::wstring& variable, const std::wstring& name)
{
    return _wcsnicmp(variable.c_str(), (name + L'=').c_str(), name.size() + 1) == 0;
}

bool isReplaced(const std::wstring& variable, const ProcessOptions& options)
{
    for (const std::string& name : options.unset)
        if (names(variable, wide(name)))
            return true;
    for (const auto& entry : options.set)
        if (names(variable, wide(entry.first)))
            return true;
    return false;
}

/// Every variable ends in a null character, and so does the block.
std::wstring environmentBlock(const ProcessOptions& options)
{
    std::wstring block;
    wchar_t* const inherited = GetEnvironmentStringsW();
    for (const wchar_t* variable = inherited; *variable; variable += std::wcslen(variable) + 1)
        if (!isReplaced(variable, options))
            block.append(variable).push_back(L'\0');
    FreeEnvironmentStringsW(inherited);
    for (const auto& entry : options.set)
        block.append(wide(entry.first + '=' + entry.second)).push_back(L'\0');
    block.push_back(L'\0');
    return block;
}

class Handle
{
public:
    Handle() = default;
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    void close()
    {
        if (m_handle)
            CloseHandle(m_handle);
        m_handle = nullptr;
    }
    HANDLE get() const { return m_handle; }
    HANDLE* address() { return &m_handle; }

private:
    HANDLE m_handle = nullptr;
};

/// The child inherits one end and only that.
void makePipe(Handle& readEnd, Handle& writeEnd, const Handle& inherited)
{
    check(CreatePipe(readEnd.address(), writeEnd.address(), nullptr, 0), "CreatePipe");
    check(SetHandleInformation(inherited.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT), "SetHandleInformation");
}

/// The ends that go to the child; closed on this side once it runs.
struct ChildEnds
{
    Handle input;
    Handle output;
    Handle errors;
};

STARTUPINFOW startupWith(const ChildEnds& ends)
{
    STARTUPINFOW startup = STARTUPINFOW();
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = ends.input.get();
    startup.hStdOutput = ends.output.get();
    startup.hStdError = ends.errors.get();
    return startup;
}

class WindowsChild : public Child
{
public:
    void start(const std::vector<std::string>& command, const ProcessOptions& options);

    std::size_t read(Stream stream, char* buffer, std::size_t size) override;
    void write(const std::string& bytes) override;
    void closeInput() override { m_input.close(); }
    void kill() override { TerminateProcess(m_process.get(), killedStatus); }
    void pause() override { callOnProcess("NtSuspendProcess"); }
    void resume() override { callOnProcess("NtResumeProcess"); }
    int wait() override;

private:
    void callOnProcess(const char* function);

    Handle m_process;
    Handle m_input;
    Handle m_output;
    Handle m_errors;
};

void WindowsChild::start(const std::vector<std::string>& command, const ProcessOptions& options)
{
    std::wstring line = lineOf(command);
    std::wstring block = environmentBlock(options);
    // Two children that start at once would inherit each other's ends.
    static std::mutex oneAtATime;
    const std::lock_guard<std::mutex> guard(oneAtATime);
    ChildEnds ends;
    makePipe(ends.input, m_input, ends.input);
    makePipe(m_output, ends.output, ends.output);
    makePipe(m_errors, ends.errors, ends.errors);
    STARTUPINFOW startup = startupWith(ends);
    PROCESS_INFORMATION information;
    check(CreateProcessW(nullptr, &line[0], nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT, &block[0], nullptr,
                         &startup, &information),
          command.at(0));
    *m_process.address() = information.hProcess;
    CloseHandle(information.hThread);
}

std::size_t WindowsChild::read(Stream stream, char* buffer, std::size_t size)
{
    DWORD got = 0;
    const HANDLE from = (stream == output ? m_output : m_errors).get();
    return ReadFile(from, buffer, static_cast<DWORD>(size), &got, nullptr) ? got : 0;
}

void WindowsChild::write(const std::string& bytes)
{
    DWORD written = 0;
    WriteFile(m_input.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

/// All threads at once; the documented interface has no such function.
void WindowsChild::callOnProcess(const char* function)
{
    typedef LONG(NTAPI * OnProcess)(HANDLE);
    void* const address = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), function));
    check(address != nullptr, function);
    check(reinterpret_cast<OnProcess>(address)(m_process.get()) >= 0, function);
}

int WindowsChild::wait()
{
    DWORD status = 0;
    check(WaitForSingleObject(m_process.get(), INFINITE) == WAIT_OBJECT_0, "WaitForSingleObject");
    check(GetExitCodeProcess(m_process.get(), &status), "GetExitCodeProcess");
    return static_cast<int>(status);
}

}  // namespace

std::string programPath()
{
    char path[4 * MAX_PATH];
    const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
    check(length > 0 && length < sizeof path, "GetModuleFileName");
    return std::string(path, length);
}

std::unique_ptr<Child> spawn(const std::vector<std::string>& command, const ProcessOptions& options)
{
    std::unique_ptr<WindowsChild> child(new WindowsChild);
    child->start(command, options);
    return child;
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
