#include "bench/timers/measured_child_posix.h"

#include <cstdio>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

namespace zorvel {
namespace bench {
namespace {

[[noreturn]] void fail(const char* what)
{
    std::perror(what);
    std::exit(1);
}

[[noreturn]] void runChild(int to, const std::function<std::vector<double>()>& measure)
{
    const std::vector<double> numbers = measure();
    const ssize_t size = static_cast<ssize_t>(numbers.size() * sizeof(double));
    // Neither threads that wait nor static objects are to be ended here.
    ::_exit(::write(to, numbers.data(), static_cast<std::size_t>(size)) == size ? 0 : 1);
}

std::vector<double> readAll(int from)
{
    std::vector<double> numbers;
    double number = 0;
    while (::read(from, &number, sizeof number) == static_cast<ssize_t>(sizeof number))
        numbers.push_back(number);
    return numbers;
}

}  // namespace

std::vector<double> measuredInChild(const std::function<std::vector<double>()>& measure)
{
    int ends[2];
    if (::pipe(ends) != 0)
        fail("pipe");
    const pid_t child = ::fork();
    if (child == -1)
        fail("fork");
    if (child == 0)
        runChild(ends[1], measure);
    ::close(ends[1]);
    const std::vector<double> numbers = readAll(ends[0]);
    ::close(ends[0]);
    int status = 0;
    if (::waitpid(child, &status, 0) != child || status != 0)
        fail("a measuring child");
    return numbers;
}

}  // namespace bench
}  // namespace zorvel
