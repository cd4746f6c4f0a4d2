#pragma once

#include <cstddef>

#include <limits.h>

namespace zorvel {
namespace platform {
namespace posix {

/// A library path in the system's form: '\' becomes '/', character by
/// character, so that the second byte of a double-byte character stays. Names
/// that themselves hold '\' cannot be reached.
///
/// The text lives in the object; nothing is allocated.
class NativePath
{
public:
    explicit NativePath(const char* path);

    NativePath(const NativePath&) = delete;
    NativePath& operator=(const NativePath&) = delete;

    /// The native path; null for a null path. A path that the system could not
    /// take (PATH_MAX bytes or more) gives the empty text, which names nothing:
    /// the system answers ENOENT, never with another file.
    const char* c_str() const { return m_isNull ? nullptr : m_text; }

private:
    bool m_isNull;
    char m_text[PATH_MAX];
};

/// Copies bytes of a path with '\' in the place of '/', which is part of no other
/// character. No terminator is added. Both may be the same text.
void copyInLibraryForm(const char* path, std::size_t length, char* to);

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
