#pragma once

#include <string>

/// Wine's host system, for the few things that Wine offers no call for:
/// symbolic links. Throws std::runtime_error on a real Windows.
namespace zorvel {
namespace test {
namespace native {

/// The host's path of a library path, quoted for its shell. The last
/// component need not exist.
std::string hostPath(const std::string& path);

/// Runs a line of the host's shell and waits for its end.
void runOnHost(const std::string& script);

}  // namespace native
}  // namespace test
}  // namespace zorvel
