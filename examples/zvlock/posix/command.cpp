#include "examples/zvlock/command.h"

#include "examples/zvlock/exit_status.h"
#include "examples/zvlock/posix/signal_mask.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace zorvel {
namespace zvlock {

namespace {

/// Tells why the new process did not become the command; it closes by itself
/// when it did.
struct Report
{
    Report()
    {
        if (::pipe2(ends, O_CLOEXEC))
            throw std::runtime_error(std::string("pipe: ") + std::strerror(errno));
    }
    ~Report()
    {
        ::close(ends[0]);
        closeWriteEnd();
    }
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    void closeWriteEnd()
    {
        if (ends[1] >= 0)
            ::close(ends[1]);
        ends[1] = -1;
    }

    /// 0 when it became the command.
    int read()
    {
        closeWriteEnd();
        int error = 0;
        while (::read(ends[0], &error, sizeof error) < 0 && errno == EINTR) {
        }
        return error;
    }

    int ends[2];
};

std::vector<char*> pointersTo(std::vector<NativeText>& words)
{
    std::vector<char*> pointers;
    for (NativeText& word : words)
        pointers.push_back(&word[0]);
    pointers.push_back(nullptr);
    return pointers;
}

/// In the new process, which has one thread and may call but little. A parent
/// that died before this could be asked for is noticed by its number.
[[noreturn]] void become(char* const* words, pid_t parent, int report)
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent)
        ::_exit(endedBySignal + SIGTERM);
    ::pthread_sigmask(SIG_SETMASK, &signalMaskAtStart(), nullptr);
    ::execvp(words[0], words);
    const int error = errno;
    if (::write(report, &error, sizeof error) < 0) {
        // Nobody is left to be told.
    }
    ::_exit(error == ENOENT ? notFound : cannotExecute);
}

}  // namespace

struct Command::Process
{
    pid_t number;

    ~Process()
    {
        while (::waitpid(number, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
};

Command::Command() = default;

Command::~Command() = default;

void Command::start(const std::vector<NativeText>& words)
{
    // Where the parent of this program ignores its children's end, nothing could be waited for.
    ::signal(SIGCHLD, SIG_DFL);
    std::vector<NativeText> copy(words);
    const std::vector<char*> pointers = pointersTo(copy);
    Report report;
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child == 0)
        become(pointers.data(), parent, report.ends[1]);
    if (child < 0)
        throw std::runtime_error(std::string("fork: ") + std::strerror(errno));
    std::unique_ptr<Process> process(new Process{child});
    if (const int error = report.read())
        throw CannotStart(error != ENOENT, std::strerror(error));
    m_process = std::move(process);
}

/// Its number stays its own until this object goes, for pass.
int Command::wait()
{
    siginfo_t end = {};
    while (::waitid(P_PID, static_cast<id_t>(m_process->number), &end, WEXITED | WNOWAIT) < 0) {
        if (errno != EINTR)
            throw std::runtime_error(std::string("waitid: ") + std::strerror(errno));
    }
    return end.si_code == CLD_EXITED ? end.si_status : endedBySignal + end.si_status;
}

void Command::pass(int signal)
{
    ::kill(m_process->number, signal);
}

}  // namespace zvlock
}  // namespace zorvel
