#include "platform/posix/loaded_module.h"

#include <cstdlib>
#include <cstring>
#include <fstream>

#include <dlfcn.h>
#include <limits.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

bool exists(const char* path)
{
    struct stat status;
    return ::lstat(path, &status) == 0;
}

/// What the system puts behind the path of a file that was removed while it is
/// in use.
const char removalMark[] = " (deleted)";
const std::size_t removalMarkLength = sizeof removalMark - 1;

/// A file may really be called so.
std::size_t lengthWithoutMark(const char* path, std::size_t length)
{
    if (length <= removalMarkLength)
        return length;
    const char* const mark = path + length - removalMarkLength;
    return std::strcmp(mark, removalMark) == 0 && !exists(path) ? length - removalMarkLength : length;
}

/// The file that is mapped at an address, as the kernel knows it.
std::string fileOfMapping(const void* address)
{
    const unsigned long wanted = reinterpret_cast<unsigned long>(address);
    std::ifstream mappings("/proc/self/maps");
    for (std::string line; std::getline(mappings, line);) {
        char* behindFirst = nullptr;
        const unsigned long first = std::strtoul(line.c_str(), &behindFirst, 16);
        if (*behindFirst != '-' || wanted < first || wanted >= std::strtoul(behindFirst + 1, nullptr, 16))
            continue;
        const std::size_t path = line.find('/');
        return path == std::string::npos ? std::string() : line.substr(path);
    }
    return std::string();
}

/// The page in which a segment begins.
ElfW(Addr) beginOf(const ElfW(Phdr) & segment)
{
    static const ElfW(Addr) pageSize = static_cast<ElfW(Addr)>(::sysconf(_SC_PAGESIZE));
    return segment.p_vaddr & ~(pageSize - 1);
}

}  // namespace

bool isOfKernel(const void* base)
{
    static const unsigned long kernels = ::getauxval(AT_SYSINFO_EHDR);
    return reinterpret_cast<unsigned long>(base) == kernels;
}

/// The loader keeps the name that a module was loaded by. A relative one meant
/// something in the directory that was current then. The executable has none.
ModulePath::ModulePath(const char* name, const void* base) : m_text(name), m_length(0)
{
    if (!name[0])
        takeExecutable();
    else if (name[0] == '/')
        m_length = std::strlen(name);
    else
        takeMapping(base);
}

void ModulePath::takeExecutable()
{
    const ssize_t length = ::readlink("/proc/self/exe", m_executable, sizeof m_executable);
    m_length = length <= 0 || length == ssize_t(sizeof m_executable) ? 0 : static_cast<std::size_t>(length);
    m_executable[m_length] = '\0';
    m_length = lengthWithoutMark(m_executable, m_length);
    m_executable[m_length] = '\0';
    m_text = m_executable;
}

void ModulePath::takeMapping(const void* address)
{
    m_mapping = fileOfMapping(address);
    m_mapping.resize(lengthWithoutMark(m_mapping.c_str(), m_mapping.size()));
    m_text = m_mapping.c_str();
    m_length = m_mapping.size();
}

void* LoadedModule::base() const
{
    for (int i = 0; i < m_info.dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = m_info.dlpi_phdr[i];
        if (segment.p_type == PT_LOAD)
            return reinterpret_cast<void*>(m_info.dlpi_addr + beginOf(segment));
    }
    return reinterpret_cast<void*>(m_info.dlpi_addr);
}

bool LoadedModule::holds(const void* address) const
{
    const ElfW(Addr) wanted = reinterpret_cast<ElfW(Addr)>(address);
    for (int i = 0; i < m_info.dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = m_info.dlpi_phdr[i];
        const ElfW(Addr) first = m_info.dlpi_addr + beginOf(segment);
        const ElfW(Addr) end = m_info.dlpi_addr + segment.p_vaddr + segment.p_memsz;
        if (segment.p_type == PT_LOAD && first <= wanted && wanted < end)
            return true;
    }
    return false;
}

/// _dl_find_object takes no lock of the loader's, which the callback could not
/// wait for.
bool LoadedModule::isMeantBy(const void* handle) const
{
    if (holds(handle))
        return true;
    dl_find_object found;
    return ::_dl_find_object(base(), &found) == 0 && found.dlfo_link_map == handle;
}

/// The loader may have lists of modules that know nothing of each other; each
/// begins with the module that this one is the first of.
const link_map* LoadedModule::findByBase(const void* address) const
{
    dl_find_object found;
    if (::_dl_find_object(const_cast<void*>(address), &found) != 0 || found.dlfo_map_start != address)
        return nullptr;
    const link_map* first = found.dlfo_link_map;
    while (first && first->l_prev)
        first = first->l_prev;
    const bool isOurs = first && first->l_addr == m_info.dlpi_addr && first->l_name == m_info.dlpi_name;
    return isOurs ? found.dlfo_link_map : nullptr;
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
