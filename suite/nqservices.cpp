#include "suite/nqservices.h"

#include "platform/directory.h"
#include "suite/qx.h"

#include <cstdlib>
#include <cstring>
#include <exception>

namespace {

/// A growing block of names, given up with release().
class NameBlock
{
public:
    NameBlock() : m_data(nullptr), m_size(0), m_capacity(0) {}
    ~NameBlock() { qxFree(m_data); }

    NameBlock(const NameBlock&) = delete;
    NameBlock& operator=(const NameBlock&) = delete;

    bool append(const char* name)
    {
        const std::size_t length = std::strlen(name) + 1;
        if (m_capacity - m_size < length && !grow(length))
            return false;
        std::memcpy(m_data + m_size, name, length);
        m_size += length;
        return true;
    }

    char* release()
    {
        char* const data = m_data;
        m_data = nullptr;
        return data;
    }

private:
    bool grow(std::size_t length)
    {
        const std::size_t capacity = m_capacity * 2 + length + 1024;
        void* const data = std::realloc(m_data, capacity);
        if (data == nullptr)
            return false;
        m_data = static_cast<char*>(data);
        m_capacity = capacity;
        return true;
    }

    char* m_data;
    std::size_t m_size;
    std::size_t m_capacity;
};

char* listEntries(const char* pattern)
{
    zorvel::platform::DirectorySearch search;
    if (search.open(pattern) != 0)
        return nullptr;
    NameBlock names;
    while (const char* name = search.next()) {
        // An empty name would end the list.
        if (*name != '\0' && !names.append(name))
            return nullptr;
    }
    return names.append("") ? names.release() : nullptr;
}

}  // namespace

char* ioGetDirList(const char* pattern, int flags)
{
    if (pattern == nullptr || *pattern == '\0' || flags != 0)
        return nullptr;
    try {
        return listEntries(pattern);
    } catch (const std::exception&) {
        return nullptr;
    }
}
