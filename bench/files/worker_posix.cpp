#include "bench/files/growth.h"

#include "bench/files/contestants.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include <unistd.h>

namespace zorvel {
namespace bench {

namespace {

const char mark[] = "--worker";

std::string quoted(const std::string& word)
{
    return '\'' + word + '\'';
}

std::string ownFile()
{
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    return std::string(path, length > 0 ? static_cast<std::size_t>(length) : 0);
}

/// In KiB. The kernel keeps it for this program alone; what it tells the parent
/// is also about whoever started the program.
double peakOfThisProcess()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    double peak = 0;
    while (status >> word)
        if (word == "VmHWM:")
            status >> peak;
    return peak;
}

Work workOf(const std::string& work, const std::string& contestant)
{
    for (const Contestant& each : contestants())
        if (contestant == each.name)
            return work == "walk" ? each.walk : each.remove;
    throw std::runtime_error("nobody is called " + contestant);
}

}  // namespace

Cost costOf(const std::string& work, const std::string& contestant, const std::string& path)
{
    std::string command = quoted(ownFile()) + ' ' + mark;
    for (const std::string& word : {work, contestant, path})
        command += ' ' + quoted(word);
    Cost cost = {0, 0};
    FILE* const output = popen(command.c_str(), "r");
    const bool isRead = output && fscanf(output, "%lf %lf", &cost.milliseconds, &cost.mebibytes) == 2;
    if (!output || pclose(output) != 0 || !isRead)
        throw std::runtime_error(command + " failed");
    return cost;
}

bool isWorker(int argc, char** argv)
{
    if (argc != 5 || std::strcmp(argv[1], mark) != 0)
        return false;
    typedef std::chrono::steady_clock Clock;
    const Work work = workOf(argv[2], argv[3]);
    const Clock::time_point begin = Clock::now();
    const bool isDone = work(argv[4]) != 0;
    const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
    if (!isDone)
        throw std::runtime_error("the work failed");
    std::printf("%f %f\n", time.count(), peakOfThisProcess() / 1024);
    return true;
}

}  // namespace bench
}  // namespace zorvel
