#include "platform/directory.h"

#include "platform/posix/entry_reader.h"
#include "platform/posix/native_path.h"
#include "platform/posix/wildcard.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

namespace zorvel {
namespace platform {

namespace {

const int openFlags = O_DIRECTORY | O_CLOEXEC;

int codeOf(int result)
{
    return result == 0 ? 0 : errno;
}

EntryKind kindOf(mode_t mode)
{
    return S_ISDIR(mode) ? EntryKind::directory : EntryKind::file;
}

/// Some file systems list no types at all.
EntryKind kindOfType(unsigned char type)
{
    return type == DT_UNKNOWN ? EntryKind::none : kindOf(DTTOIF(type));
}

/// Appends the entries of an open directory that `isWanted` takes by name.
template <class Predicate>
int readEntries(int descriptor, std::vector<ListedEntry>& entries, Predicate isWanted)
{
    if (lseek(descriptor, 0, SEEK_SET) != 0)
        return errno;
    posix::EntryReader reader(descriptor);
    while (const dirent64* const entry = reader.next()) {
        if (!posix::isDotName(entry->d_name) && isWanted(entry->d_name))
            entries.push_back({entry->d_name, kindOfType(entry->d_type)});
    }
    return reader.code();
}

}  // namespace

struct RemovalDirectory::State
{
    State() : descriptor(-1), isListable(true), isKnown(false), isModeChanged(false) {}

    ~State()
    {
        restoreMode();
        release();
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    int adopt(int opened)
    {
        descriptor = opened;
        isKnown = opened != -1 && fstat(opened, &status) == 0;
        return opened == -1 ? errno : 0;
    }

    /// A refusal leaves the directory writable; there is nobody to tell.
    void restoreMode()
    {
        if (isModeChanged && fchmod(descriptor, status.st_mode & 07777) == 0)
            isModeChanged = false;
    }

    void release()
    {
        if (descriptor != -1)
            close(descriptor);
        descriptor = -1;
    }

    /// The entry of one name.
    int find(const char* name, std::vector<ListedEntry>& entries) const
    {
        struct stat found;
        if (posix::isDotName(name))
            return ENOENT;
        if (fstatat(descriptor, name, &found, AT_SYMLINK_NOFOLLOW) != 0)
            return errno;
        entries.push_back({name, kindOf(found.st_mode)});
        return 0;
    }

    bool isSame(int other) const
    {
        struct stat found;
        return isKnown && fstat(other, &found) == 0 && found.st_dev == status.st_dev && found.st_ino == status.st_ino;
    }

    int descriptor;
    bool isListable;
    struct stat status;
    bool isKnown;
    bool isModeChanged;
};

RemovalDirectory::RemovalDirectory() {}
RemovalDirectory::~RemovalDirectory() {}
RemovalDirectory::RemovalDirectory(RemovalDirectory&& other) noexcept = default;
RemovalDirectory& RemovalDirectory::operator=(RemovalDirectory&& other) noexcept = default;

int RemovalDirectory::open(const char* path)
{
    m_state = std::make_unique<State>();
    const posix::NativePath native(path);
    if (!native.c_str())
        return ENOENT;
    const char* const name = *path ? native.c_str() : ".";
    int descriptor = ::open(name, O_RDONLY | openFlags);
    // Without read permission nothing can be listed, but a single name can still be reached.
    if (descriptor == -1 && errno == EACCES) {
        descriptor = ::open(name, O_PATH | openFlags);
        m_state->isListable = false;
    }
    return m_state->adopt(descriptor);
}

int RemovalDirectory::openChild(const RemovalDirectory& parent, const char* name)
{
    m_state = std::make_unique<State>();
    return m_state->adopt(openat(parent.m_state->descriptor, name, O_RDONLY | O_NOFOLLOW | openFlags));
}

int RemovalDirectory::list(std::vector<ListedEntry>& entries) const
{
    if (!m_state->isListable)
        return EACCES;
    return readEntries(m_state->descriptor, entries, [](const char*) { return true; });
}

int RemovalDirectory::match(const char* component, std::vector<ListedEntry>& entries) const
{
    if (!posix::hasWildcards(component))
        return m_state->find(component, entries);
    if (!m_state->isListable)
        return EACCES;
    const posix::NamePattern pattern(component);
    return readEntries(m_state->descriptor, entries,
                       [&pattern](const char* name) { return pattern.matches(name) && posix::isReachable(name); });
}

EntryKind RemovalDirectory::kind(const char* name) const
{
    struct stat status;
    if (fstatat(m_state->descriptor, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? EntryKind::none : EntryKind::file;
    return kindOf(status.st_mode);
}

int RemovalDirectory::removeFile(const char* name) const
{
    return codeOf(unlinkat(m_state->descriptor, name, 0));
}

int RemovalDirectory::removeDirectory(const char* name, RemovalDirectory*) const
{
    return codeOf(unlinkat(m_state->descriptor, name, AT_REMOVEDIR));
}

bool RemovalDirectory::allowRemovalOf(const char*) const
{
    return false;
}

void RemovalDirectory::forbidRemovalOf(const char*) const {}

void RemovalDirectory::allowRemovalsInside()
{
    if (m_state->isKnown && !m_state->isModeChanged && !(m_state->status.st_mode & S_IWUSR))
        m_state->isModeChanged = fchmod(m_state->descriptor, (m_state->status.st_mode & 07777) | S_IWUSR) == 0;
}

void RemovalDirectory::restorePermission()
{
    m_state->restoreMode();
}

void RemovalDirectory::suspend()
{
    m_state->release();
}

bool RemovalDirectory::resume(const RemovalDirectory& child)
{
    if (m_state->descriptor != -1)
        return true;
    const int descriptor = openat(child.m_state->descriptor, "..", O_RDONLY | O_NOFOLLOW | openFlags);
    if (descriptor == -1)
        return false;
    if (!m_state->isSame(descriptor)) {
        close(descriptor);
        return false;
    }
    m_state->descriptor = descriptor;
    return true;
}

}  // namespace platform
}  // namespace zorvel
