#include "bench/files/peers_windows.h"

#include <string>

#include <windows.h>

// What is prescribed or promised, and nothing else, by bare calls.

namespace zorvel {
namespace bench {

namespace {

typedef std::wstring Text;

const DWORD shareWithoutDelete = FILE_SHARE_READ | FILE_SHARE_WRITE;
const DWORD shareAll = shareWithoutDelete | FILE_SHARE_DELETE;
const DWORD fileItself = FILE_FLAG_OPEN_REPARSE_POINT;
const DWORD directoryItself = fileItself | FILE_FLAG_BACKUP_SEMANTICS;

/// The trees' paths are of ASCII.
Text wide(const std::string& path)
{
    return Text(path.begin(), path.end());
}

bool isFolder(DWORD attributes)
{
    const DWORD kind = attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT);
    return kind == FILE_ATTRIBUTE_DIRECTORY;
}

/// The calls in the code page's bytes, in which names are promised and looks prescribed.
struct Bytes
{
    typedef std::string Text;
    typedef WIN32_FIND_DATAA Found;

    static HANDLE first(const Text& pattern, Found& found)
    {
        return FindFirstFileExA(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                FIND_FIRST_EX_LARGE_FETCH);
    }
    static BOOL next(HANDLE search, Found& found) { return FindNextFileA(search, &found); }
};

/// The calls in the system's own characters.
struct Wide
{
    typedef std::wstring Text;
    typedef WIN32_FIND_DATAW Found;

    static HANDLE first(const Text& pattern, Found& found)
    {
        return FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                FIND_FIRST_EX_LARGE_FETCH);
    }
    static BOOL next(HANDLE search, Found& found) { return FindNextFileW(search, &found); }
};

template <class Character>
bool isSpecial(const Character* name)
{
    return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

/// Calls take(found) for each entry that a pattern matches.
template <class Calls, class Take>
void eachMatch(const typename Calls::Text& pattern, Take take)
{
    typename Calls::Found found;
    const HANDLE search = Calls::first(pattern, found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        if (!isSpecial(found.cFileName))
            take(found);
    } while (Calls::next(search, found));
    FindClose(search);
}

/// Reads each folder, after a look whether it is one by then and not a link to
/// one. Each counts as `perFolder`, each file as `count` says.
template <class Count>
std::uint64_t readInto(const std::string& folder, std::uint64_t perFolder, Count count)
{
    std::uint64_t sum = 0;
    eachMatch<Bytes>(folder + "\\*", [&](const WIN32_FIND_DATAA& found) {
        if (!isFolder(found.dwFileAttributes)) {
            sum += count(found);
            return;
        }
        const std::string inner = folder + '\\' + found.cFileName;
        sum += perFolder;
        if (isFolder(GetFileAttributesA(inner.c_str())))
            sum += readInto(inner, perFolder, count);
    });
    return sum;
}

std::uint64_t walk(const std::string& path)
{
    return readInto(path, 2, [](const WIN32_FIND_DATAA&) { return 1; });
}

std::uint64_t size(const std::string& path)
{
    return readInto(path, 0, [](const WIN32_FIND_DATAA& found) { return found.nFileSizeLow; });
}

std::uint64_t match(const std::string&)
{
    std::uint64_t entries = 0;
    for (const std::string& folder : patternFolders())
        eachMatch<Bytes>(folder + "\\*.txt", [&](const WIN32_FIND_DATAA&) { ++entries; });
    return entries;
}

/// Where an entry lies that was opened without following links.
Text finalPath(HANDLE entry)
{
    wchar_t path[1024];
    const DWORD length = GetFinalPathNameByHandleW(entry, path, 1024, FILE_NAME_OPENED);
    return Text(path, length < 1024 ? length : 0);
}

bool lies(const Text& location, const Text& expected)
{
    return CompareStringOrdinal(location.c_str(), -1, expected.c_str(), -1, TRUE) == CSTR_EQUAL;
}

HANDLE open(const Text& path, DWORD access, DWORD share, DWORD flags)
{
    return CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, flags, nullptr);
}

/// Takes off the name at once where the system can, as a removal by a path does.
bool dispose(HANDLE entry)
{
    const FILE_INFO_BY_HANDLE_CLASS dispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
    DWORD withPosixSemantics = 1 | 2;
    FILE_DISPOSITION_INFO whenClosed = {TRUE};
    return SetFileInformationByHandle(entry, dispositionInfoEx, &withPosixSemantics, sizeof withPosixSemantics) ||
           SetFileInformationByHandle(entry, FileDispositionInfo, &whenClosed, sizeof whenClosed);
}

/// What was looked at, and lies where it was found, is what goes.
bool removeEntry(const Text& path, const Text& expected, DWORD flags)
{
    const HANDLE entry = open(path, DELETE, shareAll, flags);
    if (entry == INVALID_HANDLE_VALUE)
        return false;
    const bool isRemoved = lies(finalPath(entry), expected) && dispose(entry);
    return CloseHandle(entry) && isRemoved;
}

/// Empties a folder that is held meanwhile so that nobody can swap it.
bool removeFolder(const Text& path, const Text& expected)
{
    const HANDLE folder = open(path, FILE_LIST_DIRECTORY, shareWithoutDelete, directoryItself);
    FILE_BASIC_INFO information;
    bool isEmptied = GetFileInformationByHandleEx(folder, FileBasicInfo, &information, sizeof information) &&
                     isFolder(information.FileAttributes) && lies(finalPath(folder), expected);
    if (isEmptied) {
        eachMatch<Wide>(path + L"\\*", [&](const WIN32_FIND_DATAW& found) {
            const Text name = Text(L"\\") + found.cFileName;
            const bool isRemoved = isFolder(found.dwFileAttributes)
                                       ? removeFolder(path + name, expected + name)
                                       : removeEntry(path + name, expected + name, fileItself);
            isEmptied = isRemoved && isEmptied;
        });
    }
    CloseHandle(folder);
    return isEmptied && removeEntry(path, expected, directoryItself);
}

std::uint64_t remove(const std::string& path)
{
    const std::string::size_type separator = path.find_last_of("/\\");
    const HANDLE top =
        open(wide(path.substr(0, separator)), FILE_LIST_DIRECTORY, shareWithoutDelete, FILE_FLAG_BACKUP_SEMANTICS);
    const bool isRemoved = removeFolder(wide(path), finalPath(top) + L'\\' + wide(path.substr(separator + 1)));
    CloseHandle(top);
    return isRemoved;
}

std::uint64_t look(const std::string& path)
{
    return isFolder(GetFileAttributesA(path.c_str()));
}

}  // namespace

Contestant bareSteps()
{
    return {"bare-steps", &walk, &size, &match, &remove, nullptr, &look};
}

}  // namespace bench
}  // namespace zorvel
