#include "tests/support/native_process.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <stdexcept>

extern char** environ;

namespace zorvel {
namespace test {
namespace native {

namespace {

const gid_t nobody = 65534;

void check(bool done, const char* what)
{
    if (!done)
        throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

/// Both ends are closed on exec, so no other child holds them open.
struct Pipe
{
    Pipe() { check(pipe2(ends, O_CLOEXEC) == 0, "pipe"); }
    ~Pipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    void closeEnd(int end)
    {
        if (ends[end] >= 0)
            close(ends[end]);
        ends[end] = -1;
    }

    int ends[2];
};

/// The strings and the null-terminated array of pointers that exec wants; made
/// before fork, because a forked child of a threaded program must not allocate.
class Strings
{
public:
    explicit Strings(const std::vector<std::string>& strings) : m_strings(strings)
    {
        for (std::string& string : m_strings)
            m_pointers.push_back(&string[0]);
        m_pointers.push_back(nullptr);
    }
    char** get() { return m_pointers.data(); }

private:
    std::vector<std::string> m_strings;
    std::vector<char*> m_pointers;
};

bool names(const std::string& variable, const std::string& name)
{
    return variable.compare(0, name.size() + 1, name + '=') == 0;
}

bool isReplaced(const std::string& variable, const ProcessOptions& options)
{
    for (const std::string& name : options.unset)
        if (names(variable, name))
            return true;
    for (const auto& entry : options.set)
        if (names(variable, entry.first))
            return true;
    return false;
}

std::vector<std::string> environment(const ProcessOptions& options)
{
    std::vector<std::string> variables;
    for (char** variable = environ; *variable; ++variable)
        if (!isReplaced(*variable, options))
            variables.push_back(*variable);
    for (const auto& entry : options.set)
        variables.push_back(entry.first + '=' + entry.second);
    return variables;
}

bool dropPrivileges()
{
    return setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0;
}

class PosixChild : public Child
{
public:
    void start(const std::vector<std::string>& command, const ProcessOptions& options);

    std::size_t read(Stream stream, char* buffer, std::size_t size) override;
    void write(const std::string& bytes) override;
    void closeInput() override { m_input.closeEnd(1); }
    void kill() override { ::kill(m_pid, SIGKILL); }
    void pause() override;
    void resume() override { ::kill(m_pid, SIGCONT); }
    int wait() override;

private:
    [[noreturn]] void becomeChild(char** command, char** variables, int program, bool unprivileged);

    pid_t m_pid = -1;
    Pipe m_input;
    Pipe m_output;
    Pipe m_errors;
};

/// The program is opened before privileges go, so an unprivileged child starts
/// also from a build folder that it could not enter.
void PosixChild::start(const std::vector<std::string>& command, const ProcessOptions& options)
{
    Strings arguments(command);
    Strings variables(environment(options));
    const int program = open(command.at(0).c_str(), O_RDONLY | O_CLOEXEC);
    check(program >= 0, command.at(0).c_str());
    m_pid = fork();
    if (m_pid == 0)
        becomeChild(arguments.get(), variables.get(), program, options.unprivileged && geteuid() == 0);
    close(program);
    check(m_pid > 0, "fork");
    m_input.closeEnd(0);
    m_output.closeEnd(1);
    m_errors.closeEnd(1);
}

/// Runs between fork and exec: system calls only.
void PosixChild::becomeChild(char** command, char** variables, int program, bool unprivileged)
{
    dup2(m_input.ends[0], STDIN_FILENO);
    dup2(m_output.ends[1], STDOUT_FILENO);
    dup2(m_errors.ends[1], STDERR_FILENO);
    signal(SIGPIPE, SIG_DFL);
    if (!unprivileged)
        execve(command[0], command, variables);
    else if (dropPrivileges())
        fexecve(program, command, variables);
    _exit(127);
}

std::size_t PosixChild::read(Stream stream, char* buffer, std::size_t size)
{
    const int from = (stream == output ? m_output : m_errors).ends[0];
    ssize_t got;
    do
        got = ::read(from, buffer, size);
    while (got < 0 && errno == EINTR);
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

void PosixChild::write(const std::string& bytes)
{
    signal(SIGPIPE, SIG_IGN);
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t now = ::write(m_input.ends[1], bytes.data() + written, bytes.size() - written);
        if (now < 0 && errno != EINTR)
            return;
        written += now > 0 ? static_cast<std::size_t>(now) : 0;
    }
}

void PosixChild::pause()
{
    siginfo_t stopped;
    ::kill(m_pid, SIGSTOP);
    // A child that has ended instead stays for wait().
    while (waitid(P_PID, static_cast<id_t>(m_pid), &stopped, WSTOPPED | WEXITED | WNOWAIT) < 0)
        check(errno == EINTR, "waitid");
}

int PosixChild::wait()
{
    int status = 0;
    while (waitpid(m_pid, &status, 0) < 0)
        check(errno == EINTR, "waitpid");
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

std::string readProgramPath()
{
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    check(length > 0, "/proc/self/exe");
    return std::string(path, static_cast<std::size_t>(length));
}

}  // namespace

/// Asked once: a process that has left its mounts behind is told the path as it
/// is outside a changed root.
std::string programPath()
{
    static const std::string path = readProgramPath();
    return path;
}

std::unique_ptr<Child> spawn(const std::vector<std::string>& command, const ProcessOptions& options)
{
    std::unique_ptr<PosixChild> child(new PosixChild);
    child->start(command, options);
    return child;
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
