#pragma once

/// Libraries loaded at run time. Paths are in the library's form.
namespace zorvel {
namespace platform {

/// Loads a library; a handle that counts, or null. The executable of the
/// process can be named as well.
void* loadLibrary(const char* path);

/// What the library itself exports under a name, or null.
void* findSymbol(void* library, const char* symbol);

/// False when the system refuses.
bool unloadLibrary(void* library);

}  // namespace platform
}  // namespace zorvel
