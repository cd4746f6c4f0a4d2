#pragma once

#include <cstddef>

struct dirent64;

namespace zorvel {
namespace platform {
namespace posix {

/// The entries of an open directory, from its present position on, read by the
/// system's own call in large pieces. Unlike a stream of the C library it needs
/// no descriptor of its own.
class EntryReader
{
public:
    /// The descriptor stays the caller's and must stay open.
    explicit EntryReader(int descriptor) : m_descriptor(descriptor), m_next(0), m_end(0), m_code(0) {}

    EntryReader(const EntryReader&) = delete;
    EntryReader& operator=(const EntryReader&) = delete;

    /// The next entry, valid until the next call; null at the end.
    const dirent64* next();

    /// At the end: 0, or errno of the failure.
    int code() const { return m_code; }

private:
    bool fill();

    const int m_descriptor;
    std::size_t m_next;
    std::size_t m_end;
    int m_code;
    alignas(8) char m_buffer[32 * 1024];
};

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
