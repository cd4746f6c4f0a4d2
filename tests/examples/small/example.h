#pragma once

#include "tests/support/process.h"

#include <string>
#include <vector>

namespace zorvel {
namespace test {

typedef std::vector<std::string> Arguments;

/// The command that runs an example, which lies next to this program.
std::vector<std::string> exampleCommand(const std::string& name, const Arguments& arguments);

struct Outcome
{
    int status;
    std::string output;
    std::string errors;
};

/// Runs an example to its end, with nothing to read.
Outcome runExample(const std::string& name, const Arguments& arguments,
                   const ProcessOptions& options = ProcessOptions());

/// The next line that a process writes; "nothing more" at the end.
std::string lineOf(Process& process);

/// The lines of a text.
std::vector<std::string> linesOf(const std::string& text);

}  // namespace test
}  // namespace zorvel
