// Locks that are taken and given back by running programs, as a script does it. Between the words of the command line
// stands "--".
//
//   locks_command ACQUIRE... -- RELEASE... -- cycles COUNT
//   locks_command ACQUIRE... -- RELEASE... -- contend LOG HOLD_MS

#include "bench/locks/contender.h"

#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <stdexcept>

namespace {

using namespace zorvel::bench;

typedef std::vector<std::string> Words;

double secondsOf(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double timeWithPrograms()
{
    rusage programs;
    getrusage(RUSAGE_CHILDREN, &programs);
    return ownProcessorTime() + secondsOf(programs.ru_utime) + secondsOf(programs.ru_stime);
}

pid_t start(const Words& words)
{
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t program = 0;
    if (posix_spawnp(&program, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
        throw std::runtime_error("cannot start " + words[0]);
    return program;
}

/// Whether the program ended with status 0.
bool runProgram(const Words& words)
{
    const pid_t program = start(words);
    int status = 0;
    while (waitpid(program, &status, 0) == -1 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Cuts the words before the next "--" off.
Words cutOff(Words& words)
{
    const Words::iterator end = std::find(words.begin(), words.end(), "--");
    const Words first(words.begin(), end);
    words.erase(words.begin(), end == words.end() ? end : end + 1);
    return first;
}

/// Whoever ends the contest ends the program that still waits; this process then tells its processor time.
void outliveTheProgram()
{
    struct sigaction ignoring = {};
    ignoring.sa_handler = [](int) {};
    ignoring.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &ignoring, nullptr);
}

}  // namespace

int main(int argc, char** argv)
{
    Words words = wordsOf(argc, argv);
    const Words acquire = cutOff(words);
    const Words release = cutOff(words);
    if (acquire.empty() || release.empty()) {
        std::cerr << "see the beginning of command_locks_posix.cpp" << std::endl;
        return 2;
    }
    outliveTheProgram();
    return carryOut(Lock{[=] { return runProgram(acquire); }, [=] { runProgram(release); }, &timeWithPrograms}, words);
}
