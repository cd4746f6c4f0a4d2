#include "tests/support/posix/own_process.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

void check(bool done, const std::string& what)
{
    if (!done)
        throw std::runtime_error(what + ": " + std::strerror(errno));
}

template <class Resource>
unsigned long exchangeLimit(Resource resource, unsigned long limit)
{
    rlimit limits;
    check(getrlimit(resource, &limits) == 0, "limit of the process");
    const unsigned long before = limits.rlim_cur;
    limits.rlim_cur = limit;
    check(setrlimit(resource, &limits) == 0, "limit of the process");
    return before;
}

/// The limit counts numbers, of which some may be free below the highest.
unsigned long limitFor(unsigned more)
{
    unsigned long number = 0;
    for (unsigned found = 0; found < more + 1; ++number)
        if (!std::filesystem::exists("/proc/self/fd/" + std::to_string(number)) &&
            !std::filesystem::is_symlink("/proc/self/fd/" + std::to_string(number)))
            ++found;
    return number - 1;
}

}  // namespace

FileMask::FileMask(unsigned mask) : m_before(umask(mask)) {}

FileMask::~FileMask()
{
    umask(m_before);
}

DescriptorLimit::DescriptorLimit(unsigned more) : m_before(exchangeLimit(RLIMIT_NOFILE, limitFor(more))) {}

DescriptorLimit::~DescriptorLimit()
{
    exchangeLimit(RLIMIT_NOFILE, m_before);
}

NoGrowth::NoGrowth() : m_before(exchangeLimit(RLIMIT_FSIZE, 0)) {}

NoGrowth::~NoGrowth()
{
    exchangeLimit(RLIMIT_FSIZE, m_before);
}

std::size_t openDescriptors()
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

std::size_t mappingsBelow(const std::string& directory)
{
    std::ifstream mappings("/proc/self/maps");
    std::size_t count = 0;
    for (std::string line; std::getline(mappings, line);)
        count += line.find(' ' + directory + '/') != std::string::npos;
    return count;
}

void makeNamedPipe(const std::string& path)
{
    check(mkfifo(path.c_str(), 0666) == 0, path);
}

int inForkedChild(const std::function<int()>& run)
{
    const pid_t child = fork();
    check(child >= 0, "fork");
    if (child == 0)
        _exit(run());
    int status = 0;
    check(waitpid(child, &status, 0) == child, "waitpid");
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

IdleFork::IdleFork() : m_child(fork())
{
    if (m_child == 0)
        for (;;)
            pause();
    check(m_child > 0, "fork");
}

IdleFork::~IdleFork()
{
    kill(m_child, SIGKILL);
    waitpid(m_child, nullptr, 0);
}

}  // namespace test
}  // namespace zorvel
