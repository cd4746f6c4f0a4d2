#include "bench/files/peers_posix.h"

#include <cstdio>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zorvel {
namespace bench {

namespace {

/// Starts a tool whose output goes nowhere, and waits for its end.
std::uint64_t run(std::vector<std::string> words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(&word[0]);
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    int status = -1;
    if (posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ) == 0)
        waitpid(process, &status, 0);
    posix_spawn_file_actions_destroy(&actions);
    return status == 0 ? succeeded : 0;
}

std::uint64_t find(const std::string& path)
{
    return run({"find", path});
}

std::uint64_t findWithTypes(const std::string& path)
{
    return run({"find", path, "-printf", "%y %p\\n"});
}

std::uint64_t findSizes(const std::string& path)
{
    return run({"find", path, "-type", "f", "-printf", "%s\\n"});
}

std::uint64_t findTexts(const std::string& path)
{
    return run({"find", path, "-name", "*.txt"});
}

std::uint64_t sumUp(const std::string& path)
{
    return run({"du", "-s", "--apparent-size", "--block-size=1", path});
}

std::uint64_t removeAll(const std::string& path)
{
    return run({"rm", "-rf", path});
}

std::uint64_t createAll(const std::string& path)
{
    return run({"mkdir", "-p", path});
}

}  // namespace

std::vector<Contestant> tools()
{
    return {{"find", &find, &findSizes, &findTexts, nullptr, nullptr, nullptr},
            {"find-with-types", &findWithTypes, nullptr, nullptr, nullptr, nullptr, nullptr},
            {"du", nullptr, &sumUp, nullptr, nullptr, nullptr, nullptr},
            {"rm", nullptr, nullptr, nullptr, &removeAll, nullptr, nullptr},
            {"mkdir", nullptr, nullptr, nullptr, nullptr, &createAll, &createAll, true}};
}

std::string versionOf(const char* tool)
{
    std::string line(200, '\0');
    FILE* const output = popen((std::string(tool) + " --version").c_str(), "r");
    const bool isThere = output && fgets(&line[0], static_cast<int>(line.size()), output);
    if (output)
        pclose(output);
    return isThere ? line.substr(0, line.find('\n')) : "";
}

}  // namespace bench
}  // namespace zorvel
