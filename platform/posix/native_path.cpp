#include "platform/posix/native_path.h"

#include "platform/codepage.h"

#include <cstring>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

void replaceSeparators(char* text)
{
    for (char* p = text; *p != '\0'; ++p)
    {
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
    std::memcpy(m_text, path, length);
    m_text[length] = '\0';
    replaceSeparators(m_text);
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
