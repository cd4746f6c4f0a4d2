#include "platform/path_rules.h"

#include "platform/codepage.h"
#include "platform/posix/native_path.h"

#include <cstring>

#include <unistd.h>

namespace zorvel {
namespace platform {
namespace {

/// A name with '\' in it cannot be written as a library path.
bool holdsBackslash(const char* native)
{
    for (const char* p = native; *p != '\0'; ++p) {
        if (isLeadByte(static_cast<unsigned char>(*p)) && p[1] != '\0')
            ++p;
        else if (*p == '\\')
            return true;
    }
    return false;
}

/// An absolute native path that grows in a buffer of its own, so that nothing
/// of the caller's changes before it is complete. No codeset has '/' inside a
/// character, so it is looked for byte by byte. The root is the empty text
/// until the end.
class AbsolutePath
{
public:
    AbsolutePath() : m_length(0) { m_text[0] = '\0'; }

    bool startAtCurrentDirectory()
    {
        if (getcwd(m_text, sizeof m_text) == nullptr || m_text[0] != '/' || holdsBackslash(m_text))
            return false;
        m_length = std::strlen(m_text);
        if (m_length == 1)
            m_length = 0;
        return true;
    }

    bool take(const char* name, std::size_t length)
    {
        if (length == 0 || (length == 1 && name[0] == '.'))
            return true;
        if (length == 2 && name[0] == '.' && name[1] == '.') {
            removeLast();
            return true;
        }
        return append(name, length);
    }

    /// Ends the text, with a separator when asked to or when it is the root,
    /// and hands it out in the library's form if it fits.
    bool finish(bool separator, char* out, std::size_t size)
    {
        if ((separator || m_length == 0) && !append("", 0))
            return false;
        m_text[m_length] = '\0';
        for (char* p = m_text; *p != '\0'; ++p) {
            if (*p == '/')
                *p = '\\';
        }
        if (m_length >= size)
            return false;
        std::memcpy(out, m_text, m_length + 1);
        return true;
    }

private:
    bool append(const char* name, std::size_t length)
    {
        if (sizeof m_text - m_length < length + 2)
            return false;
        m_text[m_length++] = '/';
        std::memcpy(m_text + m_length, name, length);
        m_length += length;
        return true;
    }

    void removeLast()
    {
        while (m_length > 0 && m_text[--m_length] != '/') {
        }
    }

    char m_text[2 * PATH_MAX];
    std::size_t m_length;
};

/// Whether an absolute native path has neither "." nor ".." among its names, nor
/// empty ones but behind the last separator. Names that begin with '.' are left
/// to the way that looks at each.
bool isPlain(const char* native)
{
    if (native[0] != '/')
        return false;
    for (const char* p = native; p != nullptr; p = std::strchr(p + 1, '/')) {
        if (p[1] == '/' || p[1] == '.')
            return false;
    }
    return true;
}

/// Copies a native path in the library's form if it fits.
bool write(const char* native, char* out, std::size_t size)
{
    const std::size_t length = std::strlen(native);
    if (length >= size)
        return false;
    for (std::size_t i = 0; i <= length; ++i)
        out[i] = native[i] == '/' ? '\\' : native[i];
    return true;
}

}  // namespace

bool fullPath(const char* in, char* out, std::size_t size)
{
    if (in == nullptr || out == nullptr || size == 0)
        return false;
    const posix::NativePath native(in);
    const char* name = native.c_str();
    if (*in != '\0' && *name == '\0')
        return false;
    if (isPlain(name))
        return write(name, out, size);
    AbsolutePath path;
    if (*name != '/' && !path.startAtCurrentDirectory())
        return false;
    std::size_t length = 0;
    for (; *name != '\0'; name += length + (name[length] == '/' ? 1 : 0)) {
        length = std::strcspn(name, "/");
        if (!path.take(name, length))
            return false;
    }
    return path.finish(*native.c_str() != '\0' && name[-1] == '/', out, size);
}

}  // namespace platform
}  // namespace zorvel
