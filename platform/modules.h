#pragma once

#include <cstdint>

/// The modules of the process. Where a function fails the system's last error
/// (platform/system_error.h) says why.
namespace zorvel {
namespace platform {

/// The calling process, for the functions below.
void* currentProcess();

/// Stores the handles of as many modules as fit into size bytes, the executable
/// first, and in `needed` the bytes that all of them take. False on failure.
bool listModules(void* process, void** modules, std::uint32_t size, std::uint32_t& needed);

/// The full path of a module of a process in a buffer of size bytes,
/// terminated, cut where it does not fit. Null is the executable. Returns its
/// length, or size when it was cut; 0, and the buffer may be as it was, when
/// there is no such module.
std::uint32_t moduleFileName(void* process, void* module, char* buffer, std::uint32_t size);

/// The same for a module of the calling process.
std::uint32_t moduleFileName(void* module, char* buffer, std::uint32_t size);

}  // namespace platform
}  // namespace zorvel
