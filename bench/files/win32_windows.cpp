#include "bench/files/peers_windows.h"

#include <string>

#include <windows.h>

namespace zorvel {
namespace bench {

namespace {

/// The calls in the code page's bytes.
struct Bytes
{
    typedef std::string Text;
    typedef WIN32_FIND_DATAA Found;

    static Text text(const std::string& path) { return path; }
    static HANDLE first(const Text& pattern, Found& found) { return FindFirstFileA(pattern.c_str(), &found); }
    static BOOL next(HANDLE search, Found& found) { return FindNextFileA(search, &found); }
    static BOOL removeFile(const Text& path) { return DeleteFileA(path.c_str()); }
    static BOOL removeDirectory(const Text& path) { return RemoveDirectoryA(path.c_str()); }
    static BOOL createDirectory(const Text& path) { return CreateDirectoryA(path.c_str(), nullptr); }
    static DWORD attributes(const Text& path) { return GetFileAttributesA(path.c_str()); }
};

/// The calls in the system's own characters.
struct Wide
{
    typedef std::wstring Text;
    typedef WIN32_FIND_DATAW Found;

    /// The trees' paths are of ASCII.
    static Text text(const std::string& path) { return Text(path.begin(), path.end()); }
    static HANDLE first(const Text& pattern, Found& found)
    {
        return FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                FIND_FIRST_EX_LARGE_FETCH);
    }
    static BOOL next(HANDLE search, Found& found) { return FindNextFileW(search, &found); }
    static BOOL removeFile(const Text& path) { return DeleteFileW(path.c_str()); }
    static BOOL removeDirectory(const Text& path) { return RemoveDirectoryW(path.c_str()); }
    static BOOL createDirectory(const Text& path) { return CreateDirectoryW(path.c_str(), nullptr); }
    static DWORD attributes(const Text& path) { return GetFileAttributesW(path.c_str()); }
};

template <class Found>
bool isDirectory(const Found& found)
{
    return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

template <class Text>
bool isSpecial(const Text* name)
{
    return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

/// Calls take(path, found) for each entry that a pattern matches; the path
/// begins with `directory` and a separator.
template <class Calls, class Take>
void eachMatch(const typename Calls::Text& directory, const char* pattern, Take take)
{
    typename Calls::Found found;
    typename Calls::Text path = directory + Calls::text(std::string("\\") + pattern);
    const HANDLE search = Calls::first(path, found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        if (isSpecial(found.cFileName))
            continue;
        path.resize(directory.size() + 1);
        path += found.cFileName;
        take(path, found);
    } while (Calls::next(search, found));
    FindClose(search);
}

template <class Text>
void add(Tally& tally, const Text& path, bool isDirectory)
{
    tally.add(reinterpret_cast<const char*>(path.data()), path.size() * sizeof path[0], isDirectory);
}

template <class Calls>
void walkInto(Tally& tally, const typename Calls::Text& directory)
{
    eachMatch<Calls>(directory, "*", [&](const typename Calls::Text& path, const typename Calls::Found& found) {
        add(tally, path, isDirectory(found));
        if (isDirectory(found))
            walkInto<Calls>(tally, path);
    });
}

template <class Calls>
std::uint64_t walk(const std::string& path)
{
    Tally tally;
    walkInto<Calls>(tally, Calls::text(path));
    return tally.entries();
}

template <class Calls>
std::uint64_t sizeOf(const typename Calls::Text& directory)
{
    std::uint64_t total = 0;
    eachMatch<Calls>(directory, "*", [&](const typename Calls::Text& path, const typename Calls::Found& found) {
        total += isDirectory(found) ? sizeOf<Calls>(path)
                                    : (static_cast<std::uint64_t>(found.nFileSizeHigh) << 32 | found.nFileSizeLow);
    });
    return total;
}

template <class Calls>
std::uint64_t size(const std::string& path)
{
    return sizeOf<Calls>(Calls::text(path));
}

template <class Calls>
std::uint64_t match(const std::string&)
{
    Tally tally;
    for (const std::string& folder : patternFolders())
        eachMatch<Calls>(Calls::text(folder), "*.txt",
                         [&](const typename Calls::Text& path, const typename Calls::Found& found) {
                             add(tally, path, isDirectory(found));
                         });
    return tally.entries();
}

template <class Calls>
bool removeAll(const typename Calls::Text& directory)
{
    bool isRemoved = true;
    eachMatch<Calls>(directory, "*", [&](const typename Calls::Text& path, const typename Calls::Found& found) {
        isRemoved = (isDirectory(found) ? removeAll<Calls>(path) : Calls::removeFile(path)) && isRemoved;
    });
    return Calls::removeDirectory(directory) && isRemoved;
}

template <class Calls>
std::uint64_t remove(const std::string& path)
{
    return removeAll<Calls>(Calls::text(path));
}

template <class Calls>
bool isThere(const typename Calls::Text& path)
{
    const DWORD attributes = Calls::attributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY;
}

/// Goes up to what exists, and down again.
template <class Calls>
bool createAll(const typename Calls::Text& path)
{
    if (isThere<Calls>(path))
        return true;
    const typename Calls::Text::size_type separator = path.find_last_of(Calls::text("/\\"));
    const bool hasParent = separator != Calls::Text::npos;
    return (!hasParent || createAll<Calls>(path.substr(0, separator))) && Calls::createDirectory(path);
}

template <class Calls>
std::uint64_t create(const std::string& path)
{
    return createAll<Calls>(Calls::text(path));
}

template <class Calls>
Contestant contestant(const char* name)
{
    return {name, &walk<Calls>, &size<Calls>, &match<Calls>, &remove<Calls>, &create<Calls>, &create<Calls>};
}

}  // namespace

Contestant win32WithBytes()
{
    return contestant<Bytes>("win32-a");
}

Contestant win32WithWideCharacters()
{
    return contestant<Wide>("win32-w");
}

}  // namespace bench
}  // namespace zorvel
