#include "fsutil/detail/path_buffer.h"

#include "suite/kpath.h"

#include <cstring>

namespace zorvel {
namespace fsutil {

PathBuffer::PathBuffer(const char* text) : m_length(std::strlen(text))
{
    if (m_length >= sizeof m_text)
        m_length = 0;
    std::memcpy(m_text, text, m_length);
    m_text[m_length] = '\0';
}

bool PathBuffer::append(const char* name)
{
    if (!kpConcatPathName(m_text, sizeof m_text, name))
        return false;
    m_length += std::strlen(m_text + m_length);
    return true;
}

bool PathBuffer::replaceFrom(std::size_t index, const char* name, std::size_t length)
{
    if (length >= sizeof m_text - index)
        return false;
    std::memcpy(m_text + index, name, length);
    m_length = index + length;
    m_text[m_length] = '\0';
    return true;
}

void PathBuffer::cut(std::size_t length)
{
    m_length = length;
    m_text[length] = '\0';
}

}  // namespace fsutil
}  // namespace zorvel
