#include "tests/simulation/campaign.h"
#include "tests/simulation/exhaustive.h"
#include "tests/simulation/posix/one_processor.h"
#include "tests/simulation/windows.h"

#include <cstdlib>
#include <iostream>
#include <string>

namespace {

using namespace zorvel::sim;

const char usage[] =
    "usage: sim --seed N [--trace] [--shrink] [--window NAME]   one schedule\n"
    "       sim --runs N [--first SEED] [--window NAME]         many; the first that goes wrong is shrunk and shown;\n"
    "                                                           with --brief only its seed is\n"
    "       sim --windows N                                     N schedules of each window that the protocol accepts\n"
    "       sim --exhaustive [CASE]                             every order of the steps of two and three processes;\n"
    "                                                           `all` with the cases that take long, or one\n"
    "\n"
    "--window NAME takes plans in which one assumption of the protocol does not hold:\n";

struct Options
{
    std::string mode;
    std::uint64_t number = 0;
    std::uint64_t first = 1;
    bool isTraced = false;
    bool isShrunk = false;
    bool isBrief = false;
    Planner planner = &randomPlan;
    std::string which;
};

int showUsage()
{
    std::cerr << usage;
    for (std::size_t i = 0; i < windowCount; ++i)
        std::cerr << "  " << windows[i].name << ": " << windows[i].what << '\n';
    return 2;
}

Planner plannerOf(const std::string& window)
{
    for (std::size_t i = 0; i < windowCount; ++i)
        if (window == windows[i].name)
            return windows[i].plan;
    return nullptr;
}

/// One option and what it takes of the arguments behind it.
bool readOption(const std::string& name, const char* value, int& taken, Options& options)
{
    taken = 1;
    if (name == "--trace")
        return options.isTraced = true;
    if (name == "--shrink")
        return options.isShrunk = true;
    if (name == "--brief")
        return options.isBrief = true;
    if (name == "--exhaustive") {
        options.mode = name;
        options.which = value ? value : "";
        taken = value ? 2 : 1;
        return true;
    }
    if (!value)
        return false;
    taken = 2;
    if (name == "--first")
        options.first = std::strtoull(value, nullptr, 10);
    else if (name == "--window")
        options.planner = plannerOf(value);
    else if (name == "--seed" || name == "--runs" || name == "--windows") {
        options.mode = name;
        options.number = std::strtoull(value, nullptr, 10);
    } else
        return false;
    return options.planner != nullptr;
}

bool run(const Options& options)
{
    if (options.mode == "--seed")
        return runOne(options.planner, options.number, options.isTraced, options.isShrunk);
    if (options.mode == "--runs")
        return runMany(options.planner, options.first, options.number, options.isBrief);
    if (options.mode == "--exhaustive")
        return runExhaustively(options.which == "all" ? "" : options.which, !options.which.empty());
    return runWindows(options.number);
}

}  // namespace

int main(int argc, char** argv)
{
    Options options;
    for (int i = 1, taken = 0; i < argc; i += taken)
        if (!readOption(argv[i], i + 1 < argc ? argv[i + 1] : nullptr, taken, options))
            return showUsage();
    if (options.mode.empty())
        return showUsage();
    useOneProcessor();
    return run(options) ? 0 : 1;
}
