#include "fsutil/detail/entry_list.h"

#include "fsutil/detail/walk_pattern.h"

#include <cstring>
#include <exception>

namespace zorvel {
namespace fsutil {

namespace {

struct Header
{
    std::size_t length;
    platform::EntryKind kind;
};

const std::size_t firstSize = 2000;

}  // namespace

EntryList::EntryList(const char* pattern) : m_end(0), m_next(0)
{
    try {
        read(pattern);
    } catch (const std::exception&) {
        m_end = 0;
    }
}

EntryList::EntryList(platform::DirectorySearch& search) : m_end(0), m_next(0)
{
    try {
        read(search);
    } catch (const std::exception&) {
        m_end = 0;
    }
    search.close();
}

void EntryList::read(platform::DirectorySearch& search)
{
    while (const char* const name = search.next())
        add(name, search.listedKind());
}

void EntryList::add(const char* name, platform::EntryKind kind)
{
    // An empty name is no entry.
    if (*name == '\0' || isSpecialName(name))
        return;
    const Header header = {std::strlen(name), kind};
    const std::size_t size = sizeof header + header.length + 1;
    if (m_block.size() - m_end < size)
        m_block.resize(firstSize + m_block.size() * 2 + size);
    std::memcpy(&m_block[m_end], &header, sizeof header);
    std::memcpy(&m_block[m_end + sizeof header], name, header.length + 1);
    m_end += size;
}

bool EntryList::next(Entry& entry)
{
    if (m_next == m_end)
        return false;
    Header header;
    std::memcpy(&header, &m_block[m_next], sizeof header);
    entry = {m_block.data() + m_next + sizeof header, header.length, header.kind};
    m_next += sizeof header + header.length + 1;
    return true;
}

}  // namespace fsutil
}  // namespace zorvel
