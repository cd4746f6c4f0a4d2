#pragma once

#include <string>

/// What the operating system says about semaphores, asked without the library.
namespace zorvel {
namespace test {

/// Why the system refuses an object of this name: its last error, 0 where it
/// accepts the name. NUL is refused everywhere.
unsigned long whyRefusesName(const std::string& name);

/// The last error of a release of what is free.
unsigned long codeOfFreeSemaphore();

/// The last error of what is done with a closed handle.
unsigned long codeOfClosedHandle();

}  // namespace test
}  // namespace zorvel
