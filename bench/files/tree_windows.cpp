#include "bench/files/tree.h"

#include <system_error>

#include <windows.h>

namespace zorvel {
namespace bench {

namespace {

void require(bool isDone, const std::string& path)
{
    if (!isDone)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), path);
}

}  // namespace

void makeFile(const std::string& path, std::uint64_t size)
{
    const DWORD plain = FILE_ATTRIBUTE_NORMAL;
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, plain, nullptr);
    require(file != INVALID_HANDLE_VALUE, path);
    const DWORD end = SetFilePointer(file, static_cast<LONG>(size), nullptr, FILE_BEGIN);
    require(end != INVALID_SET_FILE_POINTER && SetEndOfFile(file), path);
    CloseHandle(file);
}

void makeFolder(const std::string& path)
{
    require(CreateDirectoryA(path.c_str(), nullptr), path);
}

}  // namespace bench
}  // namespace zorvel
