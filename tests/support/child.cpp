#include "tests/support/child.h"

#include "tests/support/native_process.h"

#include <cstdio>
#include <cstring>
#include <map>

namespace zorvel {
namespace test {

namespace {

const char childOption[] = "--child=";

typedef std::map<std::string, ChildMain> Modes;

/// Modes register from static initialisers of any file, so the map is made at
/// its first use.
Modes& modes()
{
    static Modes all;
    return all;
}

bool isChildOption(const char* argument)
{
    return std::strncmp(argument, childOption, sizeof childOption - 1) == 0;
}

int runMode(const std::string& name, const std::vector<std::string>& arguments)
{
    const Modes::const_iterator found = modes().find(name);
    if (found != modes().end())
        return found->second(arguments);
    std::fprintf(stderr, "no child mode is called '%s'\n", name.c_str());
    return 127;
}

}  // namespace

ChildMode::ChildMode(const char* name, ChildMain run)
{
    modes()[name] = run;
}

bool runChildMode(int argc, char** argv, int& status)
{
    if (argc < 2 || !isChildOption(argv[1]))
        return false;
    status = runMode(argv[1] + sizeof childOption - 1, std::vector<std::string>(argv + 2, argv + argc));
    return true;
}

std::vector<std::string> childCommand(const std::string& mode, const std::vector<std::string>& arguments)
{
    std::vector<std::string> command{native::programPath(), childOption + mode};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

ChildResult runChild(const std::string& mode, const std::vector<std::string>& arguments, const ProcessOptions& options)
{
    Process process(childCommand(mode, arguments), options);
    ChildResult result;
    result.status = process.finish(&result.output, &result.errors);
    return result;
}

}  // namespace test
}  // namespace zorvel
