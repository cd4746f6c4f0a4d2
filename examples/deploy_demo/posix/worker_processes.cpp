#include "examples/deploy_demo/posix/worker_processes.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <system_error>

extern char** environ;

namespace zorvel {
namespace demo {

namespace {

/// Written to by the signal handler, so that a poll wakes up.
int wakeUp[2] = {-1, -1};

const int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};

extern "C" void onEndingSignal(int)
{
    const int saved = errno;
    const char byte = 0;
    if (::write(wakeUp[1], &byte, 1) < 0) {
        // The pipe is full of earlier signals: the poll wakes up anyhow.
    }
    errno = saved;
}

void check(int error, const char* what)
{
    if (error)
        throw std::system_error(error, std::generic_category(), what);
}

void makePipe(int (&ends)[2])
{
    check(::pipe2(ends, O_CLOEXEC) ? errno : 0, "pipe");
}

void closeEnd(int& end)
{
    if (end >= 0)
        ::close(end);
    end = -1;
}

/// The child's standard streams and signals; freed with the object.
class SpawnPlan
{
public:
    SpawnPlan(int input, int output)
    {
        ::posix_spawn_file_actions_init(&m_files);
        ::posix_spawnattr_init(&m_attributes);
        ::posix_spawn_file_actions_adddup2(&m_files, input, STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&m_files, output, STDOUT_FILENO);
        sigset_t defaults;
        ::sigemptyset(&defaults);
        ::sigaddset(&defaults, SIGPIPE);
        for (const int signal : endingSignals)
            ::sigaddset(&defaults, signal);
        ::posix_spawnattr_setsigdefault(&m_attributes, &defaults);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnPlan()
    {
        ::posix_spawnattr_destroy(&m_attributes);
        ::posix_spawn_file_actions_destroy(&m_files);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    pid_t run(std::vector<std::string> command) const
    {
        std::vector<char*> arguments;
        for (std::string& word : command)
            arguments.push_back(&word[0]);
        arguments.push_back(nullptr);
        pid_t pid = -1;
        check(::posix_spawn(&pid, arguments[0], &m_files, &m_attributes, arguments.data(), environ), arguments[0]);
        return pid;
    }

private:
    posix_spawn_file_actions_t m_files;
    posix_spawnattr_t m_attributes;
};

}  // namespace

struct WorkerProcesses::Child
{
    ~Child()
    {
        if (pid > 0 && !waited) {
            ::kill(pid, SIGKILL);
            wait();
        }
        closeEnd(input[0]);
        closeEnd(input[1]);
        closeEnd(output[0]);
        closeEnd(output[1]);
    }

    void wait()
    {
        while (!waited && ::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
        waited = true;
    }

    pid_t pid = -1;
    bool waited = false;
    int status = 0;
    int input[2] = {-1, -1};
    int output[2] = {-1, -1};
    std::string pending;  ///< read, but not yet reported
};

WorkerProcesses::WorkerProcesses()
{
    makePipe(wakeUp);
    ::fcntl(wakeUp[1], F_SETFL, O_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = onEndingSignal;
    for (const int signal : endingSignals)
        ::sigaction(signal, &action, nullptr);
    ::signal(SIGPIPE, SIG_IGN);
}

/// The signals keep their handler: what is left to do is to tidy up.
WorkerProcesses::~WorkerProcesses() = default;

void WorkerProcesses::start(const std::vector<std::string>& command)
{
    std::unique_ptr<Child> child(new Child);
    makePipe(child->input);
    makePipe(child->output);
    child->pid = SpawnPlan(child->input[0], child->output[1]).run(command);
    closeEnd(child->input[0]);
    closeEnd(child->output[1]);
    m_children.push_back(std::move(child));
}

void WorkerProcesses::send(std::size_t process, const std::string& line)
{
    // A line is shorter than a pipe's buffer, so it goes in as a whole.
    const std::string bytes = line + '\n';
    while (::write(m_children[process]->input[1], bytes.data(), bytes.size()) < 0 && errno == EINTR) {
    }
}

bool WorkerProcesses::takeLine(std::size_t process, Report& report)
{
    std::string& pending = m_children[process]->pending;
    const std::size_t end = pending.find('\n');
    if (end == std::string::npos)
        return false;
    // Windows programs end their lines with a carriage return as well.
    const std::size_t length = end > 0 && pending[end - 1] == '\r' ? end - 1 : end;
    report = {Report::line, process, pending.substr(0, length), now()};
    pending.erase(0, end + 1);
    return true;
}

Report WorkerProcesses::read(std::size_t process)
{
    Child& child = *m_children[process];
    Report report;
    char buffer[4096];
    const ssize_t got = ::read(child.output[0], buffer, sizeof buffer);
    if (got > 0) {
        child.pending.append(buffer, static_cast<std::size_t>(got));
        takeLine(process, report);
    } else if (got == 0 || errno != EINTR) {
        closeEnd(child.output[0]);
        report.kind = Report::ended;
        report.process = process;
    }
    return report;
}

Report WorkerProcesses::next(std::chrono::milliseconds timeout)
{
    Report report;
    for (std::size_t i = 0; i < m_children.size(); ++i)
        if (takeLine(i, report))
            return report;

    // A poll passes over the descriptors of those that have ended: they are -1.
    std::vector<pollfd> watched(1, pollfd{wakeUp[0], POLLIN, 0});
    for (const auto& child : m_children)
        watched.push_back(pollfd{child->output[0], POLLIN, 0});
    if (::poll(watched.data(), watched.size(), static_cast<int>(timeout.count())) <= 0)
        return report;
    if (watched[0].revents) {
        report.kind = Report::interrupted;
        return report;
    }
    for (std::size_t i = 0; i < m_children.size(); ++i)
        if (watched[i + 1].revents)
            return read(i);
    return report;
}

void WorkerProcesses::kill(std::size_t process)
{
    ::kill(m_children[process]->pid, SIGKILL);
    m_children[process]->wait();
}

int WorkerProcesses::finish(std::size_t process)
{
    Child& child = *m_children[process];
    child.wait();
    return WIFSIGNALED(child.status) ? 128 + WTERMSIG(child.status) : WEXITSTATUS(child.status);
}

std::string programPath()
{
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
    check(length < 0 ? errno : 0, "/proc/self/exe");
    return std::string(path, static_cast<std::size_t>(length));
}

bool outputIsTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

}  // namespace demo
}  // namespace zorvel
