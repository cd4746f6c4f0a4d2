#include "platform/loader.h"

#include "platform/posix/native_path.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

namespace zorvel {
namespace platform {
namespace {

bool isThisExecutable(const char* path)
{
    struct stat file;
    struct stat executable;
    return ::stat(path, &file) == 0 && ::stat("/proc/self/exe", &executable) == 0 && file.st_dev == executable.st_dev &&
           file.st_ino == executable.st_ino;
}

/// Whether an address lies in the library, as far as the loader knows. What is
/// made for each thread lies nowhere, and is believed.
bool isInside(void* library, void* address)
{
    link_map* own = nullptr;
    link_map* found = nullptr;
    Dl_info unused;
    return ::dlinfo(library, RTLD_DI_LINKMAP, &own) == 0 &&
           (::dladdr1(address, &unused, reinterpret_cast<void**>(&found), RTLD_DL_LINKMAP) == 0 || found == own);
}

}  // namespace

/// The empty path would be the executable for the loader. By its path the
/// loader refuses the executable, which is not loaded a second time.
void* loadLibrary(const char* path)
{
    const posix::NativePath native(path);
    if (!native.c_str() || !*native.c_str())
        return nullptr;
    if (void* const library = ::dlopen(native.c_str(), RTLD_LAZY | RTLD_LOCAL))
        return library;
    return isThisExecutable(native.c_str()) ? ::dlopen(nullptr, RTLD_LAZY | RTLD_LOCAL) : nullptr;
}

/// The loader looks into the libraries that a library needs as well; what lies
/// there is not the library's own.
void* findSymbol(void* library, const char* symbol)
{
    if (!library || !symbol)
        return nullptr;
    void* const address = ::dlsym(library, symbol);
    return address && isInside(library, address) ? address : nullptr;
}

bool unloadLibrary(void* library)
{
    return library && ::dlclose(library) == 0;
}

}  // namespace platform
}  // namespace zorvel
