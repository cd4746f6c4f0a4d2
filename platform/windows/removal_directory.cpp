#include "platform/directory.h"

#include "platform/codepage.h"
#include "platform/windows/error_code.h"
#include "platform/windows/listing.h"
#include "platform/windows/wide_text.h"

#include <windows.h>

#include <direct.h>
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

namespace zorvel {
namespace platform {

using windows::isLiteral;

namespace {

/// The longest path that is handed to the system, without its terminator.
const std::size_t longestPath = 2561;

const DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
const DWORD shareWithoutDelete = FILE_SHARE_READ | FILE_SHARE_WRITE;
const DWORD followLinks = FILE_FLAG_BACKUP_SEMANTICS;
const DWORD linkItself = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT;
/// Opens no directory, and no link to one.
const DWORD fileItself = FILE_FLAG_OPEN_REPARSE_POINT;

class Handle
{
public:
    Handle() : m_handle(INVALID_HANDLE_VALUE) {}
    Handle(const std::string& path, DWORD access, DWORD share, DWORD flags)
        : m_handle(CreateFileA(path.c_str(), access, share, nullptr, OPEN_EXISTING, flags, nullptr))
    {
    }
    ~Handle() { close(); }

    Handle(Handle&& other) noexcept : m_handle(other.m_handle) { other.m_handle = INVALID_HANDLE_VALUE; }
    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        return *this;
    }

    bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }

    void close()
    {
        if (isOpen())
            CloseHandle(m_handle);
        m_handle = INVALID_HANDLE_VALUE;
    }

private:
    HANDLE m_handle;
};

/// Where an open handle really lies, in one form of the name; empty where the
/// system cannot tell.
std::wstring finalPath(const Handle& handle, DWORD form)
{
    std::wstring path(512, L'\0');
    for (;;) {
        const DWORD size = static_cast<DWORD>(path.size());
        const DWORD length = GetFinalPathNameByHandleW(handle.get(), &path[0], size, FILE_NAME_OPENED | form);
        if (length < size) {
            path.resize(length);
            return path;
        }
        path.resize(length + 1);
    }
}

/// The same in the first form that the system knows: volumes without a drive
/// letter and those of some drivers have only the later ones.
std::wstring finalPath(const Handle& handle)
{
    std::wstring path;
    for (const DWORD form : {VOLUME_NAME_DOS, VOLUME_NAME_GUID, VOLUME_NAME_NT, VOLUME_NAME_NONE}) {
        path = finalPath(handle, form);
        if (!path.empty())
            break;
    }
    return path;
}

/// Whether a directory is open at the other end, and not a link to one.
bool isDirectoryItself(const Handle& handle)
{
    FILE_BASIC_INFO information;
    if (!GetFileInformationByHandleEx(handle.get(), FileBasicInfo, &information, sizeof information))
        return false;
    const DWORD kind = information.FileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT);
    return kind == FILE_ATTRIBUTE_DIRECTORY;
}

bool isMissing(DWORD error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// FileDispositionInfoEx of Windows 10, for which the headers want more than the
/// oldest Windows that zorvel is for.
const FILE_INFO_BY_HANDLE_CLASS dispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
const DWORD deleteFlag = 1;
const DWORD posixSemanticsFlag = 2;

/// Where the system can, the name goes at once, as the removal by a path has it
/// too: a program that has the file open would else keep it, and with it the
/// directory, until it closes the file. Not every file system can.
bool takeNameOff(const Handle& entry)
{
    DWORD wanted = deleteFlag | posixSemanticsFlag;
    return SetFileInformationByHandle(entry.get(), dispositionInfoEx, &wanted, sizeof wanted);
}

bool removeWhenClosed(const Handle& entry)
{
    FILE_DISPOSITION_INFO wanted = {TRUE};
    return SetFileInformationByHandle(entry.get(), FileDispositionInfo, &wanted, sizeof wanted);
}

/// Removes an entry that was opened with the right to.
int removeOpened(const Handle& entry)
{
    if (takeNameOff(entry) || removeWhenClosed(entry))
        return 0;
    const DWORD error = GetLastError();
    if (isMissing(error))
        return ENOENT;
    return error == ERROR_DIR_NOT_EMPTY ? ENOTEMPTY : EACCES;
}

bool endsInSeparator(const std::string& path)
{
    bool isSeparator = false;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const bool isPair = isLeadByte(static_cast<unsigned char>(path[i])) && i + 1 < path.size();
        isSeparator = !isPair && (path[i] == '\\' || path[i] == '/');
        i += isPair ? 1 : 0;
    }
    return isSeparator;
}

}  // namespace

struct RemovalDirectory::State
{
    void setPath(const std::string& path)
    {
        const bool isBare = path.empty() || endsInSeparator(path) || path.back() == ':';
        prefix = isBare ? path : path + '\\';
    }

    /// The path of an entry.
    std::string join(const char* name) const { return prefix + name; }

    /// Whether an entry that was opened without following links, and lies where
    /// the system says, lies in this directory under its own name. Some systems
    /// resolve a link all the same: whatever is done to its path then happens
    /// to the target. Where the system cannot tell, nothing is known, and the
    /// entry stays.
    bool holds(const std::wstring& entry, const char* name) const
    {
        if (location.empty())
            return false;
        std::wstring expected = location;
        if (expected.back() != L'\\')
            expected += L'\\';
        expected += windows::wide(name);
        return CompareStringOrdinal(expected.c_str(), -1, entry.c_str(), -1, TRUE) == CSTR_EQUAL;
    }

    /// Opens an entry without following links: 0 when it lies here.
    int open(const char* name, DWORD access, DWORD flags, Handle& entry) const
    {
        const std::string entryPath = join(name);
        if (!isLiteral(name))
            return EACCES;
        if (entryPath.size() > longestPath)
            return ENAMETOOLONG;
        entry = Handle(entryPath, access, shareAll, flags);
        if (!entry.isOpen())
            return isMissing(GetLastError()) ? ENOENT : EACCES;
        return holds(finalPath(entry), name) ? 0 : EACCES;
    }

    /// 0 when the entry may be removed by its path.
    int check(const char* name) const
    {
        Handle entry;
        return open(name, 0, linkItself, entry);
    }

    std::string prefix;
    Handle handle;
    std::wstring location;
};

RemovalDirectory::RemovalDirectory() {}
RemovalDirectory::~RemovalDirectory() {}
RemovalDirectory::RemovalDirectory(RemovalDirectory&& other) noexcept = default;
RemovalDirectory& RemovalDirectory::operator=(RemovalDirectory&& other) noexcept = default;

int RemovalDirectory::open(const char* path)
{
    m_state.reset(new State);
    if (!path)
        return ENOENT;
    m_state->setPath(path);
    const std::string name = *path ? path : ".";
    m_state->handle = Handle(name, FILE_LIST_DIRECTORY, shareWithoutDelete, followLinks);
    // Somebody else may hold it so that it cannot be held here as well; its entries can still be reached.
    if (!m_state->handle.isOpen())
        m_state->handle = Handle(name, 0, shareAll, followLinks);
    if (!m_state->handle.isOpen())
        return windows::codeOfLookup(GetLastError());
    m_state->location = finalPath(m_state->handle);
    return 0;
}

int RemovalDirectory::openChild(const RemovalDirectory& parent, const char* name)
{
    m_state.reset(new State);
    if (!isLiteral(name))
        return EACCES;
    const std::string path = parent.m_state->join(name);
    if (path.size() > longestPath)
        return ENAMETOOLONG;
    m_state->setPath(path);
    m_state->handle = Handle(path, FILE_LIST_DIRECTORY, shareWithoutDelete, linkItself);
    if (!m_state->handle.isOpen())
        return isMissing(GetLastError()) ? ENOENT : EACCES;
    m_state->location = finalPath(m_state->handle);
    if (!isDirectoryItself(m_state->handle) || !parent.m_state->holds(m_state->location, name)) {
        // Held any longer, it would forbid the removal of the link itself.
        m_state->handle.close();
        return ENOTDIR;
    }
    return 0;
}

namespace {

/// Appends what a listing gives, which was opened with a code.
int takeAll(windows::Listing& listing, int code, std::vector<ListedEntry>& entries)
{
    if (code != 0)
        return code;
    while (const char* name = listing.next()) {
        if (strcmp(name, ".") != 0 && strcmp(name, "..") != 0)
            entries.push_back({name, listing.kind()});
    }
    return listing.code();
}

}  // namespace

int RemovalDirectory::list(std::vector<ListedEntry>& entries) const
{
    windows::Listing listing;
    return takeAll(listing, listing.openAll(windows::wide(m_state->join("*").c_str())), entries);
}

int RemovalDirectory::match(const char* component, std::vector<ListedEntry>& entries) const
{
    windows::Listing listing;
    return takeAll(listing, listing.open(m_state->join(component).c_str()), entries);
}

EntryKind RemovalDirectory::kind(const char* name) const
{
    const std::string path = m_state->join(name);
    if (path.size() > longestPath || !isLiteral(name))
        return EntryKind::file;
    const EntryKind kind = entryKind(path.c_str());
    return kind == EntryKind::none && !isMissing(GetLastError()) ? EntryKind::file : kind;
}

/// What was looked at is what goes: nobody can put something else in between.
int RemovalDirectory::removeFile(const char* name) const
{
    Handle file;
    const int refused = m_state->open(name, DELETE, fileItself, file);
    return refused ? refused : removeOpened(file);
}

/// One that was open as a child goes like a file. A link to a directory can be
/// more than an entry to the system, which has a call of its own for them.
int RemovalDirectory::removeDirectory(const char* name, RemovalDirectory* child) const
{
    if (!child || !child->m_state) {
        const int refused = m_state->check(name);
        if (refused)
            return refused;
        return _rmdir(m_state->join(name).c_str()) == 0 ? 0 : errno;
    }
    child->m_state->handle.close();
    Handle directory;
    const int refused = m_state->open(name, DELETE, linkItself, directory);
    return refused ? refused : removeOpened(directory);
}

bool RemovalDirectory::allowRemovalOf(const char* name) const
{
    const std::string path = m_state->join(name);
    if (m_state->check(name) != 0)
        return false;
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_READONLY))
        return false;
    return changeMode(path.c_str(), _S_IREAD | _S_IWRITE) == 0;
}

void RemovalDirectory::forbidRemovalOf(const char* name) const
{
    const std::string path = m_state->join(name);
    if (m_state->check(name) == 0)
        changeMode(path.c_str(), _S_IREAD);
}

void RemovalDirectory::allowRemovalsInside() {}
void RemovalDirectory::restorePermission() {}
void RemovalDirectory::suspend() {}

bool RemovalDirectory::resume(const RemovalDirectory&)
{
    return true;
}

}  // namespace platform
}  // namespace zorvel
