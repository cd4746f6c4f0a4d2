#include "platform/posix/native_path.h"

#include "platform/codepage.h"

#include <cstring>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

/// Byte by byte: without a branch the compiler takes many at once. Gives
/// whether all were of ASCII, where no byte is half of a character.
bool replaceInAscii(const char* text, std::size_t length, char* result)
{
    unsigned char all = 0;
    for (std::size_t i = 0; i < length; ++i) {
        all |= static_cast<unsigned char>(text[i]);
        result[i] = text[i] == '\\' ? '/' : text[i];
    }
    return all < 0x80;
}

void replaceSeparators(char* text)
{
    for (char* p = text; *p != '\0'; ++p) {
        if (isLeadByte(static_cast<unsigned char>(*p)) && p[1] != '\0')
            ++p;
        else if (*p == '\\')
            *p = '/';
    }
}

}  // namespace

NativePath::NativePath(const char* path) : m_isNull(path == nullptr)
{
    m_text[0] = '\0';
    if (path == nullptr)
        return;
    const std::size_t length = strnlen(path, sizeof m_text);
    if (length == sizeof m_text)
        return;
    m_text[length] = '\0';
    if (replaceInAscii(path, length, m_text))
        return;
    std::memcpy(m_text, path, length);
    replaceSeparators(m_text);
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
