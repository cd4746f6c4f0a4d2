#pragma once

#include <string>
#include <vector>

/// The machines of the rig, as the program that drives the tests sees them.
/// Everything here throws std::runtime_error when it fails.
namespace zorvel {
namespace test {

/// A variable that tests/hosts/run sets.
std::string setting(const char* name);
/// Its words, which blanks separate.
std::vector<std::string> settings(const char* name);

/// Runs a command on a machine ("A", "B" or the server "S") and returns what
/// it prints.
std::string onMachine(const std::string& machine, const std::vector<std::string>& command);

/// "cut-off", "heal", "kill", "start": see rig/control.
void control(const std::string& what, const std::string& machine);

/// Moves a machine's clock by so many seconds.
void moveClock(const std::string& machine, int seconds);

}  // namespace test
}  // namespace zorvel
