#pragma once

#include <link.h>

#include <string>

namespace zorvel {
namespace platform {
namespace posix {

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

    /// The path of such a module, as path() gives it.
    static std::string pathOf(const link_map& module, const void* base);

    /// Whether a handle means it: an address in it, or what dlopen() gave.
    bool isMeantBy(const void* handle) const;

    /// The kernel's own module, which lies in no file.
    bool isOfKernel() const;

    /// The full path of its file in the system's form; empty when it cannot be
    /// found out.
    std::string path() const;

private:
    bool holds(const void* address) const;

    const dl_phdr_info& m_info;
};

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
