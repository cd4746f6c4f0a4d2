#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

namespace zorvel {
namespace fuzz {

/// Bytes in a block of memory of exactly their size, so that a sanitizer sees
/// the first byte that is read or written beyond them.
class HeapText
{
public:
    /// The bytes of a text, a terminator, and room for `spare` more bytes.
    static HeapText terminated(const std::string& text, std::size_t spare = 0)
    {
        HeapText result(text.size() + 1 + spare);
        std::memcpy(result.data(), text.c_str(), text.size() + 1);
        return result;
    }

    /// The bytes alone.
    static HeapText exact(const std::string& text)
    {
        HeapText result(text.size());
        std::memcpy(result.data(), text.data(), text.size());
        return result;
    }

    /// A buffer that is full of '#'.
    explicit HeapText(std::size_t size) : m_bytes(new char[size]), m_size(size)
    {
        std::memset(m_bytes.get(), '#', size);
    }

    char* data() { return m_bytes.get(); }
    std::string str() const { return std::string(m_bytes.get(), m_size); }

private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size;
};

/// A text up to its first NUL, as functions of terminated strings see it.
inline std::string untilNul(const std::string& text)
{
    return text.substr(0, text.find('\0'));
}

}  // namespace fuzz
}  // namespace zorvel
