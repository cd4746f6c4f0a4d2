#pragma once

#include "tests/support/process.h"

#include <string>
#include <vector>

/// A test binary runs itself for what needs a process of its own: a mode is
/// registered by name, and the child is this binary with --child=NAME.
namespace zorvel {
namespace test {

typedef int (*ChildMain)(const std::vector<std::string>& arguments);

/// Registers a mode; at namespace scope:
///   const ChildMode mode("holder", &holderMain);
class ChildMode
{
public:
    ChildMode(const char* name, ChildMain run);
};

/// For main(): runs the mode that the command line asks for and sets its exit
/// status; false when it asks for none.
bool runChildMode(int argc, char** argv, int& status);

/// The command that runs this binary in a mode.
std::vector<std::string> childCommand(const std::string& mode, const std::vector<std::string>& arguments = {});

struct ChildResult
{
    int status;
    std::string output;  ///< line ends are '\n' on every system
    std::string errors;
};

/// Runs a mode to its end.
ChildResult runChild(const std::string& mode, const std::vector<std::string>& arguments = {},
                     const ProcessOptions& options = ProcessOptions());

}  // namespace test
}  // namespace zorvel
