#include "platform/posix/entry_reader.h"

#include <dirent.h>
#include <errno.h>
#include <sys/types.h>

namespace zorvel {
namespace platform {
namespace posix {

/// A directory that was removed meanwhile has no entries any more, which is no
/// failure.
bool EntryReader::fill()
{
    const ssize_t size = getdents64(m_descriptor, m_buffer, sizeof m_buffer);
    if (size == -1 && errno != ENOENT)
        m_code = errno;
    m_next = 0;
    m_end = size > 0 ? static_cast<std::size_t>(size) : 0;
    return m_end != 0;
}

const dirent64* EntryReader::next()
{
    while (m_next < m_end || (m_code == 0 && fill())) {
        const dirent64* const entry = reinterpret_cast<const dirent64*>(m_buffer + m_next);
        m_next += entry->d_reclen;
        // As readdir(3) does: without a number it is an entry that is gone.
        if (entry->d_ino != 0)
            return entry;
    }
    return nullptr;
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
