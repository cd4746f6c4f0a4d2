#include "platform/modules.h"

#include "platform/codepage.h"
#include "platform/posix/loaded_module.h"
#include "platform/posix/native_path.h"
#include "platform/posix/wildcard.h"

#include <cstring>

#include <errno.h>

namespace zorvel {
namespace platform {
namespace {

using posix::LoadedModule;
using posix::ModulePath;

struct Listing
{
    void** modules;
    std::size_t room;
    std::size_t found;
};

int addToListing(dl_phdr_info* info, std::size_t, void* data)
{
    Listing& listing = *static_cast<Listing*>(data);
    void* const base = LoadedModule(*info).base();
    if (posix::isOfKernel(base))
        return 0;
    if (listing.found < listing.room)
        listing.modules[listing.found] = base;
    ++listing.found;
    return 0;
}

struct Search
{
    Search(const void* wanted, char* to, std::uint32_t room) : module(wanted), buffer(to), size(room) {}

    const void* module;
    char* buffer;
    std::uint32_t size;
    std::uint32_t written = 0;  ///< the length of the path, once it is in the buffer
    std::string rest;           ///< else the path as the system has it
    int code = ENOENT;
    bool isFirst = true;
};

/// Writes a path at once where that takes no look at its characters: this runs
/// while the loader waits, and the C library may have to load a module of its
/// own to tell them apart.
void take(const ModulePath& path, Search& search)
{
    search.code = path.length() == 0 ? ENOENT : 0;
    if (path.length() >= search.size || std::memchr(path.text(), '\\', path.length())) {
        search.rest.assign(path.text(), path.length());
        return;
    }
    posix::copyInLibraryForm(path.text(), path.length(), search.buffer);
    search.buffer[path.length()] = '\0';
    search.written = static_cast<std::uint32_t>(path.length());
}

/// Writes a native path in the library's form, if it can be read back then: not
/// with '\' in a name.
std::uint32_t writeRest(const Search& search)
{
    if (!posix::isReachable(search.rest.c_str()))
        return 0;
    const bool fits = search.rest.size() < search.size;
    const std::size_t length = fits ? search.rest.size() : wholeCharacters(search.rest.c_str(), search.size - 1);
    posix::copyInLibraryForm(search.rest.c_str(), length, search.buffer);
    search.buffer[length] = '\0';
    return fits ? static_cast<std::uint32_t>(length) : search.size;
}

/// Whether a module that the loader shows is the one that is looked for, or
/// leads to it at once, as the first may; then its path is taken.
bool takePath(const LoadedModule& module, Search& search)
{
    const link_map* const wanted = search.module && search.isFirst ? module.findByBase(search.module) : nullptr;
    search.isFirst = false;
    if (wanted)
        take(ModulePath(wanted->l_name, search.module), search);
    // The loader begins with the executable, which null means.
    else if (!search.module || module.isMeantBy(search.module))
        take(ModulePath(module.name(), module.base()), search);
    else
        return false;
    return true;
}

/// The path is taken while the loader waits: the name that it keeps goes with the
/// module. Exceptions may not pass the loader, which calls this.
int findModule(dl_phdr_info* info, std::size_t, void* data)
{
    Search& search = *static_cast<Search*>(data);
    try {
        return takePath(LoadedModule(*info), search) ? 1 : 0;
    } catch (...) {
        search.code = ENOMEM;
    }
    return 1;
}

}  // namespace

/// What Windows gives for the calling process: no address of anything.
void* currentProcess()
{
    return reinterpret_cast<void*>(~std::uintptr_t(0));
}

bool listModules(void*, void** modules, std::uint32_t size, std::uint32_t& needed)
{
    Listing listing = {modules, size / sizeof *modules, 0};
    ::dl_iterate_phdr(&addToListing, &listing);
    needed = static_cast<std::uint32_t>(listing.found * sizeof *modules);
    return true;
}

std::uint32_t moduleFileName(void* module, char* buffer, std::uint32_t size)
{
    Search search(module, buffer, size);
    if (size != 0)
        ::dl_iterate_phdr(&findModule, &search);
    if (search.code == 0 && search.written == 0) {
        search.written = writeRest(search);
        search.code = search.written == 0 ? ENOENT : 0;
    }
    if (search.code != 0)
        errno = search.code;
    return search.written;
}

std::uint32_t moduleFileName(void*, void* module, char* buffer, std::uint32_t size)
{
    return moduleFileName(module, buffer, size);
}

}  // namespace platform
}  // namespace zorvel
