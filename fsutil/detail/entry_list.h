#pragma once

#include "platform/directory.h"

#include <cstddef>
#include <string>

namespace zorvel {
namespace fsutil {

/// The entries that a pattern matches, as the walk goes through them: all are
/// read before the first is visited, and nothing of the system is held
/// meanwhile.
class EntryList
{
public:
    struct Entry
    {
        const char* name;
        std::size_t length;
        platform::EntryKind kind;  ///< file or directory if the listing said so, else none
    };

    /// Reads the list; it is empty when nothing can be listed and when memory
    /// is exhausted. Never throws. "." and ".." are left out.
    explicit EntryList(const char* pattern);

    /// The same for what was opened to be listed, which is closed then.
    explicit EntryList(platform::DirectorySearch& search);

    EntryList(const EntryList&) = delete;
    EntryList& operator=(const EntryList&) = delete;

    /// The next entry in the system's order, valid as long as the list. False
    /// at the end.
    bool next(Entry& entry);

private:
    void read(const char* pattern);
    void read(platform::DirectorySearch& search);
    void add(const char* name, platform::EntryKind kind);

    /// Headers, each with the name and its terminator behind it.
    std::string m_block;
    std::size_t m_end;
    std::size_t m_next;
};

}  // namespace fsutil
}  // namespace zorvel
