#include <zorvel/modules.h>

#include "platform/modules.h"
#include "platform/system_error.h"
#include "suite/qx.h"

#include <boost/system/system_error.hpp>

#include <cstring>

namespace {

const std::uint32_t inlineCount = 128;

[[noreturn]] void fail(unsigned long code, const char* what)
{
    throw boost::system::system_error(static_cast<int>(code), boost::system::system_category(), what);
}

/// A block for so many bytes of handles, all null: when modules go between the
/// two looks, the handles behind the last one must not be anything. Null when
/// memory is exhausted.
void** makeBlock(std::uint32_t size)
{
    void* const block = qxMallocWithCheck(size);
    if (block)
        std::memset(block, 0, size);
    return static_cast<void**>(block);
}

}  // namespace

zvLoadedModuleList::zvLoadedModuleList()
    : process(zorvel::platform::currentProcess()), inlineModules(), modules(inlineModules), count(0)
{
    std::uint32_t needed = 0;
    if (!zorvel::platform::listModules(process, inlineModules, sizeof inlineModules, needed))
        fail(zorvel::platform::lastError(), "EnumProcessModules failed on first call");
    if (needed > sizeof inlineModules)
        takeAll(needed);
    else
        count = needed / sizeof *modules;
}

/// The size that the first look reported counts, whatever the second one says.
void zvLoadedModuleList::takeAll(std::uint32_t needed)
{
    void** const block = makeBlock(needed);
    if (!block) {
        count = inlineCount;
        return;
    }
    modules = block;
    std::uint32_t unused = 0;
    if (!zorvel::platform::listModules(process, modules, needed, unused)) {
        const unsigned long code = zorvel::platform::lastError();
        qxFree(modules);
        modules = nullptr;
        fail(code, "EnumProcessModules failed on second call");
    }
    count = needed / sizeof *modules;
}

/// A block of memory is there only for more handles than fit in a list. After an
/// assignment the handles may also be those in another list.
zvLoadedModuleList::~zvLoadedModuleList()
{
    if (modules != inlineModules && count > inlineCount)
        qxFree(modules);
}

/// Every field as it is, the pointer too: the target reads the source's handles
/// in the source's own storage. Callers keep the source alive.
zvLoadedModuleList& zvLoadedModuleList::operator=(const zvLoadedModuleList& other)
{
    // NOLINTNEXTLINE(bugprone-undefined-memory-manipulation)
    std::memmove(static_cast<void*>(this), &other, sizeof *this);
    return *this;
}

zvLoadedModuleListIterator zvLoadedModuleList::begin() const
{
    return zvLoadedModuleListIterator(process, modules, count, 0);
}

zvLoadedModuleListIterator zvLoadedModuleList::end() const
{
    return zvLoadedModuleListIterator(process, modules, count, count);
}
