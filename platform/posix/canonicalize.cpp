#include "platform/path_rules.h"

#include "platform/codepage.h"

#include <cstring>

namespace zorvel {
namespace platform {
namespace {

/// The length of the component at p: up to the next '\' or the end.
std::size_t componentLength(const char* p)
{
    std::size_t length = 0;
    while (p[length] != '\0' && p[length] != '\\')
        length += isLeadByte(static_cast<unsigned char>(p[length])) && p[length + 1] != '\0' ? 2 : 1;
    return length;
}

/// The length of what ".." cannot remove: the two separators of a network
/// path, a drive with its separator, one separator, or nothing.
std::size_t prefixLength(const char* path)
{
    if (path[0] == '\\')
        return path[1] == '\\' ? 2 : 1;
    const bool drive = path[0] != '\0' && !isLeadByte(static_cast<unsigned char>(path[0])) && path[1] == ':';
    return drive && path[2] == '\\' ? 3 : 0;
}

/// Takes a path component by component, the way the path service of the other
/// system does. Empty components count: "a\\..\b" is "a\b". The first ".." of a
/// relative path is a name like others.
///
/// The text is never longer than what was taken, so a bound on the input is one
/// on the text.
class CanonicalPath
{
public:
    CanonicalPath(const char* prefix, std::size_t length)
        : m_length(length), m_count(0), m_kept(length == 2 ? 1 : 0), m_relative(length == 0)
    {
        std::memcpy(m_text, prefix, length);
    }

    void take(const char* name, std::size_t length)
    {
        const bool first = m_relative && m_count == 0;
        if ((length == 1 && name[0] == '.') || (length == 0 && first))
            return;
        if (length == 2 && name[0] == '.' && name[1] == '.' && !first)
            removeLast();
        else
            append(name, length);
    }

    /// Writes the result. A text of "." alone stays the current directory: it
    /// must not turn into the root.
    void write(char* out)
    {
        if (m_length == 0)
            m_text[m_length++] = '.';
        else if (m_length == 2 && m_text[1] == ':' && !isLeadByte(static_cast<unsigned char>(m_text[0])))
            m_text[m_length++] = '\\';
        std::memcpy(out, m_text, m_length);
        out[m_length] = '\0';
    }

private:
    void append(const char* name, std::size_t length)
    {
        m_starts[m_count] = m_length;
        if (m_count > 0)
            m_text[m_length++] = '\\';
        std::memcpy(m_text + m_length, name, length);
        m_length += length;
        ++m_count;
    }

    /// Removes the last name. The server of a network path stays. A relative
    /// path that has lost its first name goes on from the root, as there.
    void removeLast()
    {
        if (m_count <= m_kept)
            return;
        m_length = m_starts[--m_count];
        if (m_relative && m_count == 0) {
            m_text[m_length++] = '\\';
            m_relative = false;
        }
    }

    char m_text[canonicalPathSize];
    std::size_t m_length;
    std::size_t m_starts[canonicalPathSize];
    std::size_t m_count;
    std::size_t m_kept;
    bool m_relative;
};

}  // namespace

bool canonicalize(const char* in, char* out)
{
    if (in == nullptr || strnlen(in, canonicalPathSize) == canonicalPathSize) {
        out[0] = '\0';
        return false;
    }
    if (in[0] == '\0') {
        std::strcpy(out, "\\");
        return true;
    }
    const std::size_t prefix = prefixLength(in);
    CanonicalPath path(in, prefix);
    const char* name = in + prefix;
    for (;;) {
        const std::size_t length = componentLength(name);
        path.take(name, length);
        if (name[length] == '\0')
            break;
        name += length + 1;
    }
    path.write(out);
    return true;
}

}  // namespace platform
}  // namespace zorvel
