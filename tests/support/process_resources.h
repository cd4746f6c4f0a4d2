#pragma once

#include <cstddef>

namespace zorvel {
namespace test {

/// What this process has of the operating system.
struct ProcessResources
{
    std::size_t descriptors;
    std::size_t threads;
};

/// Asked without the library. A thread that was joined may be counted for a
/// moment longer.
ProcessResources processResources();

/// Writes a text to the standard error output at once, also while the process
/// is about to break down.
void writeAtOnce(const char* text);

}  // namespace test
}  // namespace zorvel
