#include "tests/support/temporary_tree_system.h"

#include "tests/support/windows/host.h"

#include <windows.h>

#include <cstring>
#include <stdexcept>

namespace zorvel {
namespace test {
namespace native {

namespace {

const long long ticksPerSecond = 10000000;
const long long secondsFrom1601To1970 = 11644473600LL;

void check(bool done, const std::string& path)
{
    if (!done)
        throw std::runtime_error(path + ": system error " + std::to_string(GetLastError()));
}

/// An open file or directory.
class Opened
{
public:
    Opened(const std::string& path, DWORD access, DWORD disposition)
        : m_handle(CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               disposition, FILE_FLAG_BACKUP_SEMANTICS, nullptr))
    {
        check(m_handle != INVALID_HANDLE_VALUE, path);
    }
    ~Opened() { CloseHandle(m_handle); }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    HANDLE get() const { return m_handle; }

private:
    HANDLE m_handle;
};

DWORD attributes(const std::string& path)
{
    const DWORD found = GetFileAttributesA(path.c_str());
    check(found != INVALID_FILE_ATTRIBUTES, path);
    return found;
}

long long ticks(const FILETIME& time)
{
    return static_cast<long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

FILETIME fileTime(long long ticks)
{
    FILETIME time;
    time.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
    time.dwLowDateTime = static_cast<DWORD>(ticks);
    return time;
}

long long modificationTicks(const std::string& path)
{
    const Opened file(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    FILETIME time;
    check(GetFileTime(file.get(), nullptr, nullptr, &time), path);
    return ticks(time);
}

bool isDots(const char* name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

std::vector<WIN32_FIND_DATAA> entries(const std::string& directory)
{
    std::vector<WIN32_FIND_DATAA> found;
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA((directory + "\\*").c_str(), &entry);
    check(search != INVALID_HANDLE_VALUE, directory);
    do {
        if (!isDots(entry.cFileName))
            found.push_back(entry);
    } while (FindNextFileA(search, &entry));
    FindClose(search);
    return found;
}

std::vector<std::string>& linksMade()
{
    static std::vector<std::string> links;
    return links;
}

/// Under Wine every call that removes or renames a link acts on its target, so
/// the host removes the links that are left, before the rest goes.
void removeLinksBelow(const std::string& directory)
{
    std::vector<std::string> others;
    for (const std::string& link : linksMade())
        if (link.compare(0, directory.size() + 1, directory + '\\') == 0)
            runOnHost("rm -f " + hostPath(link));
        else
            others.push_back(link);
    linksMade().swap(others);
}

void removeEntry(const std::string& path, DWORD attributes);

void removeDirectory(const std::string& path)
{
    for (const WIN32_FIND_DATAA& entry : entries(path))
        removeEntry(path + '\\' + entry.cFileName, entry.dwFileAttributes);
    check(RemoveDirectoryA(path.c_str()), path);
}

void removeEntry(const std::string& path, DWORD attributes)
{
    if (attributes & FILE_ATTRIBUTE_READONLY)
        SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        check(DeleteFileA(path.c_str()), path);
    else if (attributes & FILE_ATTRIBUTE_REPARSE_POINT)
        check(RemoveDirectoryA(path.c_str()), path);
    else
        removeDirectory(path);
}

}  // namespace

std::string makeUniqueDirectory()
{
    static unsigned count = 0;
    char parent[MAX_PATH + 1];
    check(GetTempPathA(sizeof parent, parent) > 0, "GetTempPath");
    const std::string prefix = parent + ("zorvel-test-" + std::to_string(GetCurrentProcessId())) + '-';
    std::string path;
    do
        path = prefix + std::to_string(++count);
    while (!CreateDirectoryA(path.c_str(), nullptr) && GetLastError() == ERROR_ALREADY_EXISTS);
    attributes(path);
    return path;
}

void makeDirectory(const std::string& path)
{
    check(CreateDirectoryA(path.c_str(), nullptr), path);
}

void makeFile(const std::string& path, const std::string& content)
{
    const Opened file(path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    check(WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr), path);
}

void makeLink(const std::string& target, const std::string& path)
{
    linksMade().push_back(path);
    runOnHost("ln -s " + hostPath(target) + ' ' + hostPath(path));
}

void removeTree(const std::string& path)
{
    removeLinksBelow(path);
    removeDirectory(path);
}

bool exists(const std::string& path)
{
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string content(const std::string& path)
{
    const Opened file(path, GENERIC_READ, OPEN_EXISTING);
    std::string all;
    char buffer[4096];
    DWORD got = 0;
    do {
        check(ReadFile(file.get(), buffer, sizeof buffer, &got, nullptr), path);
        all.append(buffer, got);
    } while (got > 0);
    return all;
}

std::vector<std::string> names(const std::string& path)
{
    std::vector<std::string> found;
    for (const WIN32_FIND_DATAA& entry : entries(path))
        found.push_back(entry.cFileName);
    return found;
}

void moveModificationTime(const std::string& path, long seconds)
{
    const FILETIME time = fileTime(modificationTicks(path) + seconds * ticksPerSecond);
    const Opened file(path, FILE_WRITE_ATTRIBUTES, OPEN_EXISTING);
    check(SetFileTime(file.get(), nullptr, nullptr, &time), path);
}

long long modificationTime(const std::string& path)
{
    return modificationTicks(path) / ticksPerSecond - secondsFrom1601To1970;
}

void makeReadOnly(const std::string& path)
{
    check(SetFileAttributesA(path.c_str(), attributes(path) | FILE_ATTRIBUTE_READONLY), path);
}

bool isReadOnly(const std::string& path)
{
    return (attributes(path) & FILE_ATTRIBUTE_READONLY) != 0;
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
