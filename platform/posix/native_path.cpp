#include "platform/posix/native_path.h"

#include "platform/codepage.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

/// What is taken at one step: a loop of this length has no end to look for, so
/// the compiler makes a few instructions of it.
const std::size_t blockSize = 16;

void replaceInBlock(const char* from, char* to, char what, char with)
{
    char block[blockSize];
    std::memcpy(block, from, blockSize);
    for (char& byte : block)
        byte = byte == what ? with : byte;
    std::memcpy(to, block, blockSize);
}

/// Both may be the same text. Of a long one the last block is taken by its end:
/// bytes taken twice are the same after it.
void replaceBytes(const char* from, std::size_t length, char* to, char what, char with)
{
    if (length < blockSize) {
        std::replace_copy(from, from + length, to, what, with);
        return;
    }
    for (std::size_t i = 0; i < length; i += blockSize) {
        const std::size_t begin = std::min(i, length - blockSize);
        replaceInBlock(from + begin, to + begin, what, with);
    }
}

bool isAsciiBlock(const char* text)
{
    std::uint64_t words[2];
    std::memcpy(words, text, sizeof words);
    return ((words[0] | words[1]) & 0x8080808080808080u) == 0;
}

/// Whether no byte is half of a double-byte character, whatever the codeset.
bool isAscii(const char* text, std::size_t length)
{
    if (length < blockSize)
        return std::all_of(text, text + length, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
    for (std::size_t i = 0; i < length; i += blockSize) {
        if (!isAsciiBlock(text + std::min(i, length - blockSize)))
            return false;
    }
    return true;
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
    if (isAscii(path, length)) {
        replaceBytes(path, length, m_text, '\\', '/');
        return;
    }
    std::memcpy(m_text, path, length);
    replaceSeparators(m_text);
}

void copyInLibraryForm(const char* path, std::size_t length, char* to)
{
    replaceBytes(path, length, to, '/', '\\');
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
