#pragma once

#include <string>

#include <limits.h>
#include <link.h>

namespace zorvel {
namespace platform {
namespace posix {

/// The full path of a module's file in the system's form; empty when it cannot
/// be found out. Allocates only for a module that was loaded by a relative name.
class ModulePath
{
public:
    /// From the name that the loader keeps, which has to stay as long as this,
    /// and where the module begins in memory.
    ModulePath(const char* name, const void* base);

    ModulePath(const ModulePath&) = delete;
    ModulePath& operator=(const ModulePath&) = delete;

    /// Terminated.
    const char* text() const { return m_text; }
    std::size_t length() const { return m_length; }

private:
    void takeExecutable();
    void takeMapping(const void* address);

    const char* m_text;
    std::size_t m_length;
    char m_executable[PATH_MAX];
    std::string m_mapping;
};

/// Whether the kernel's own module, which lies in no file, begins there.
bool isOfKernel(const void* base);

/// A module as the dynamic loader shows it, inside a callback of
/// dl_iterate_phdr: while that runs no module goes.
class LoadedModule
{
public:
    explicit LoadedModule(const dl_phdr_info& info) : m_info(info) {}

    /// Where it begins in memory; no two modules begin at one place.
    void* base() const;

    /// The module of the same list that begins at an address, found without a
    /// look at the others; null where that fails, which says nothing. Lives as
    /// long as the callback runs.
    const link_map* findByBase(const void* address) const;

    /// Whether a handle means it: an address in it, or what dlopen() gave.
    bool isMeantBy(const void* handle) const;

    /// The name that the loader keeps.
    const char* name() const { return m_info.dlpi_name; }

private:
    bool holds(const void* address) const;

    const dl_phdr_info& m_info;
};

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
