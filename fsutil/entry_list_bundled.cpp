#include "fsutil/detail/entry_list.h"

namespace zorvel {
namespace fsutil {

/// What ioGetDirList gives with the bundled suite, and what the listing says
/// of each entry besides.
void EntryList::read(const char* pattern)
{
    platform::DirectorySearch search;
    if (search.open(pattern) == 0)
        read(search);
}

}  // namespace fsutil
}  // namespace zorvel
