#pragma once

#include <cstddef>
#include <cstring>

namespace zorvel {
namespace suite {

/// Somebody's buffer, filled from its beginning. What does not fit is counted
/// only; the bytes that fit are there up to the very last one.
class TextBuffer
{
public:
    TextBuffer(char* buffer, std::size_t size) : m_buffer(buffer), m_size(size), m_length(0) {}

    void append(const char* text, std::size_t length)
    {
        const std::size_t room = m_length < m_size ? m_size - m_length : 0;
        std::memcpy(m_buffer + (m_size - room), text, length < room ? length : room);
        m_length += length;
    }

    /// Of the whole text, which may be longer than the buffer.
    std::size_t length() const { return m_length; }

private:
    char* const m_buffer;
    const std::size_t m_size;
    std::size_t m_length;
};

}  // namespace suite
}  // namespace zorvel
