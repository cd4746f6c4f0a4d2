#include "platform/modules.h"

#include "platform/codepage.h"
#include "platform/posix/loaded_module.h"
#include "platform/posix/wildcard.h"

#include <errno.h>

namespace zorvel {
namespace platform {
namespace {

using posix::LoadedModule;

struct Listing
{
    void** modules;
    std::size_t room;
    std::size_t found;
};

int addToListing(dl_phdr_info* info, std::size_t, void* data)
{
    Listing& listing = *static_cast<Listing*>(data);
    const LoadedModule module(*info);
    if (module.isOfKernel())
        return 0;
    if (listing.found < listing.room)
        listing.modules[listing.found] = module.base();
    ++listing.found;
    return 0;
}

struct Search
{
    const void* module;
    std::string path;
    int code;
    bool isFirst;
};

/// Whether a module that the loader shows is the one that is looked for, or
/// leads to it at once, as the first may; its path.
bool takePath(const LoadedModule& module, Search& search)
{
    const link_map* const wanted = search.module && search.isFirst ? module.findByBase(search.module) : nullptr;
    search.isFirst = false;
    if (wanted)
        search.path = LoadedModule::pathOf(*wanted, search.module);
    // The loader begins with the executable, which null means.
    else if (!search.module || module.isMeantBy(search.module))
        search.path = module.path();
    else
        return false;
    return true;
}

/// Exceptions may not pass the loader, which calls this.
int findModule(dl_phdr_info* info, std::size_t, void* data)
{
    Search& search = *static_cast<Search*>(data);
    try {
        if (!takePath(LoadedModule(*info), search))
            return 0;
        search.code = 0;
    } catch (...) {
        search.code = ENOMEM;
    }
    return 1;
}

/// Whether a native path can be written in the library's form and read back:
/// not with '\' in a name.
bool canBeWritten(const std::string& native)
{
    const bool holdsBackslash = native.find('\\') != std::string::npos;
    return !native.empty() && (!holdsBackslash || posix::isReachable(native.c_str()));
}

/// Writes a native path in the library's form. '/' stands inside no character.
std::uint32_t writePath(const std::string& native, char* buffer, std::uint32_t size)
{
    const bool fits = native.size() < size;
    const std::size_t length = fits ? native.size() : wholeCharacters(native.c_str(), size - 1);
    for (std::size_t i = 0; i < length; ++i)
        buffer[i] = native[i] == '/' ? '\\' : native[i];
    buffer[length] = '\0';
    return fits ? static_cast<std::uint32_t>(length) : size;
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
    Search search = {module, std::string(), ENOENT, true};
    if (size != 0)
        ::dl_iterate_phdr(&findModule, &search);
    if (search.code == 0 && !canBeWritten(search.path))
        search.code = ENOENT;
    if (search.code == 0)
        return writePath(search.path, buffer, size);
    errno = search.code;
    return 0;
}

std::uint32_t moduleFileName(void*, void* module, char* buffer, std::uint32_t size)
{
    return moduleFileName(module, buffer, size);
}

}  // namespace platform
}  // namespace zorvel
