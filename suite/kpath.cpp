#include "suite/kpath.h"

#include "platform/path_rules.h"
#include "suite/qx.h"

#include <cstring>

namespace platform = zorvel::platform;

namespace {

const std::size_t none = static_cast<std::size_t>(-1);

bool isSeparator(char byte)
{
    return byte == '\\' || byte == '/';
}

/// Nobody has to be asked about a byte of ASCII.
bool isLead(char byte)
{
    return (byte & 0x80) != 0 && qxIsMultiByteLead(static_cast<unsigned char>(byte));
}

/// The index of the last separator, or none.
std::size_t lastSeparator(const char* path)
{
    std::size_t found = none;
    for (std::size_t i = 0; path[i] != '\0'; ++i) {
        if (isSeparator(path[i]))
            found = i;
        else if (isLead(path[i]) && path[i + 1] != '\0')
            ++i;
    }
    return found;
}

/// Whether the first `length` bytes are what a root's last separator follows:
/// nothing, other separators, or a drive.
bool isRootPrefix(const char* path, std::size_t length)
{
    return std::strspn(path, "\\/") >= length || (length == 2 && platform::drivePrefixLength(path) == 2);
}

struct Split
{
    std::size_t directoryEnd;
    std::size_t nameBegin;
};

Split splitPath(const char* path)
{
    const std::size_t separator = lastSeparator(path);
    if (separator == none) {
        const std::size_t drive = platform::drivePrefixLength(path);
        return {drive, drive};
    }
    return {isRootPrefix(path, separator) ? separator + 1 : separator, separator + 1};
}

/// Whether a name can follow a path without a separator between them.
bool needsNoSeparator(const char* path, std::size_t length)
{
    return length == 0 || lastSeparator(path) == length - 1 || (length == 2 && platform::drivePrefixLength(path) == 2);
}

}  // namespace

bool kpIsAbsolutePath(const char* path)
{
    return path != nullptr && platform::isAbsolutePath(path);
}

bool kpSeparatePathName(const char* path, char* directory, std::size_t directorySize, char* name, std::size_t nameSize)
{
    if (path == nullptr || directory == nullptr || name == nullptr)
        return false;
    const Split split = splitPath(path);
    const std::size_t nameLength = std::strlen(path + split.nameBegin);
    if (split.directoryEnd >= directorySize || nameLength >= nameSize)
        return false;
    // The name first: writing the directory over the path ends the path there.
    std::memmove(name, path + split.nameBegin, nameLength + 1);
    std::memmove(directory, path, split.directoryEnd);
    directory[split.directoryEnd] = '\0';
    return true;
}

bool kpConcatPathName(char* buffer, std::size_t size, const char* name)
{
    if (buffer == nullptr || name == nullptr || std::memchr(buffer, '\0', size) == nullptr)
        return false;
    const std::size_t length = std::strlen(buffer);
    const std::size_t nameLength = std::strlen(name);
    const std::size_t between = needsNoSeparator(buffer, length) ? 0 : 1;
    if (nameLength >= size - length - between)
        return false;
    std::memmove(buffer + length + between, name, nameLength + 1);
    if (between == 1)
        buffer[length] = '\\';
    return true;
}
