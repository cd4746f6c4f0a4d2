#include "fsutil/detail/entry_list.h"

#include <zorvel/errors.h>
#include <zorvel/suite.h>

#include "suite/nqservices.h"

#include <cstring>

namespace zorvel {
namespace fsutil {

/// The order and the names are the suite's own. It says nothing of what the
/// entries are.
void EntryList::read(const char* pattern)
{
    zvScopedResource<char*> list(ioGetDirList(pattern, 0), &qxFree);
    for (const char* name = list.get(); name && *name; name += std::strlen(name) + 1)
        add(name, platform::EntryKind::none);
}

}  // namespace fsutil
}  // namespace zorvel
