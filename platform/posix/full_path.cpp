#include "platform/path_rules.h"

#include "platform/codepage.h"
#include "platform/posix/native_path.h"

#include <algorithm>
#include <cstdint>
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
        if (m_length >= size)
            return false;
        posix::copyInLibraryForm(m_text, m_length, out);
        out[m_length] = '\0';
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

/// 1 or 0, like what follows: nothing here branches.
int isSeparator(char byte)
{
    return int{byte == '/'} | int{byte == '\\'};
}

/// Whether a byte is not of ASCII, or a separator before another or before '.'.
int isFlaw(char byte, char next)
{
    const int isHigh = static_cast<unsigned char>(byte) >= 0x80;
    return isHigh | (isSeparator(byte) & (isSeparator(next) | int{next == '.'}));
}

const std::size_t blockSize = 16;

/// The loop has no way out before its end, so the compiler makes a few
/// instructions of it.
bool isPlainBlock(const char* text)
{
    char block[blockSize];
    char next[blockSize];
    std::memcpy(block, text, blockSize);
    std::memcpy(next, text + 1, blockSize);
    for (std::size_t i = 0; i < blockSize; ++i)
        block[i] = static_cast<char>(isFlaw(block[i], next[i]));
    std::uint64_t flaws[2];
    std::memcpy(flaws, block, blockSize);
    return (flaws[0] | flaws[1]) == 0;
}

bool isPlainBytes(const char* text, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i) {
        if (isFlaw(text[i], text[i + 1]) != 0)
            return false;
    }
    return true;
}

/// Whether a path is absolute and has neither "." nor ".." among its names, nor
/// empty ones but behind the last separator. Names that begin with '.', and
/// bytes that may be half of a character, are left to the way that looks at
/// each. The last block is taken by its end, with the terminator behind it.
bool isPlain(const char* path, std::size_t length)
{
    if (isSeparator(path[0]) == 0)
        return false;
    if (length < blockSize)
        return isPlainBytes(path, length);
    for (std::size_t i = 0; i < length; i += blockSize) {
        if (!isPlainBlock(path + std::min(i, length - blockSize)))
            return false;
    }
    return true;
}

/// A plain path is its own full one.
bool writePlain(const char* path, std::size_t length, char* out, std::size_t size)
{
    if (length >= size)
        return false;
    posix::copyInLibraryForm(path, length, out);
    out[length] = '\0';
    return true;
}

bool writeFull(const char* in, char* out, std::size_t size)
{
    const posix::NativePath native(in);
    const char* name = native.c_str();
    if (*in != '\0' && *name == '\0')
        return false;
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

}  // namespace

bool fullPath(const char* in, char* out, std::size_t size)
{
    if (in == nullptr || out == nullptr || size == 0)
        return false;
    const std::size_t length = strnlen(in, PATH_MAX);
    if (length < PATH_MAX && isPlain(in, length))
        return writePlain(in, length, out, size);
    return writeFull(in, out, size);
}

}  // namespace platform
}  // namespace zorvel
