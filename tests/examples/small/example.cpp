#include "tests/examples/small/example.h"

#include "tests/support/native_process.h"

#include <sstream>

namespace zorvel {
namespace test {

std::vector<std::string> exampleCommand(const std::string& name, const Arguments& arguments)
{
    const std::string program = native::programPath();
    const std::size_t file = program.find_last_of("/\\") + 1;
    const std::size_t suffix = program.find('.', file);
    std::vector<std::string> command{program.substr(0, file) + name +
                                     (suffix == std::string::npos ? std::string() : program.substr(suffix))};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

Outcome runExample(const std::string& name, const Arguments& arguments, const ProcessOptions& options)
{
    Process process(exampleCommand(name, arguments), options);
    Outcome outcome;
    outcome.status = process.finish(&outcome.output, &outcome.errors);
    return outcome;
}

std::string lineOf(Process& process)
{
    std::string line;
    return process.readLine(line) ? line : "nothing more";
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

}  // namespace test
}  // namespace zorvel
