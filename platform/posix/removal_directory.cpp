#include "platform/directory.h"

#include "platform/posix/native_path.h"
#include "platform/posix/wildcard.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorvel {
namespace platform {

namespace {

const int openFlags = O_DIRECTORY | O_CLOEXEC;

int codeOf(int result)
{
    return result == 0 ? 0 : errno;
}

/// Names of an open directory; the stream has a descriptor of its own because
/// it closes it.
std::vector<std::string> namesOf(int descriptor)
{
    std::vector<std::string> names;
    const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    DIR* const raw = copy != -1 ? fdopendir(copy) : nullptr;
    if (!raw && copy != -1)
        close(copy);
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(raw, &closedir);
    if (!stream)
        return names;
    rewinddir(stream.get());
    while (const dirent* entry = readdir(stream.get())) {
        if (!posix::isDotName(entry->d_name))
            names.push_back(entry->d_name);
    }
    return names;
}

}  // namespace

struct RemovalDirectory::State
{
    State() : descriptor(-1), isKnown(false), isModeChanged(false) {}

    ~State() { release(); }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    int adopt(int opened)
    {
        descriptor = opened;
        isKnown = opened != -1 && fstat(opened, &status) == 0;
        return opened == -1 ? errno : 0;
    }

    void release()
    {
        if (descriptor != -1)
            close(descriptor);
        descriptor = -1;
    }

    bool isSame(int other) const
    {
        struct stat found;
        return isKnown && fstat(other, &found) == 0 && found.st_dev == status.st_dev && found.st_ino == status.st_ino;
    }

    int descriptor;
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
    m_state.reset(new State);
    const posix::NativePath native(path);
    if (!native.c_str())
        return ENOENT;
    const char* const name = *path ? native.c_str() : ".";
    int descriptor = ::open(name, O_RDONLY | openFlags);
    // Without read permission nothing can be listed, but a single name can still be reached.
    if (descriptor == -1 && errno == EACCES)
        descriptor = ::open(name, O_PATH | openFlags);
    return m_state->adopt(descriptor);
}

int RemovalDirectory::openChild(const RemovalDirectory& parent, const char* name)
{
    m_state.reset(new State);
    return m_state->adopt(openat(parent.m_state->descriptor, name, O_RDONLY | O_NOFOLLOW | openFlags));
}

std::vector<std::string> RemovalDirectory::list() const
{
    return namesOf(m_state->descriptor);
}

std::vector<std::string> RemovalDirectory::match(const char* component) const
{
    std::vector<std::string> matches;
    if (!posix::hasWildcards(component)) {
        struct stat status;
        if (!posix::isDotName(component) && fstatat(m_state->descriptor, component, &status, AT_SYMLINK_NOFOLLOW) == 0)
            matches.push_back(component);
        return matches;
    }
    for (std::string& name : list()) {
        if (posix::matchesWildcards(component, name.c_str()) && posix::isReachable(name.c_str()))
            matches.push_back(std::move(name));
    }
    return matches;
}

EntryKind RemovalDirectory::kind(const char* name) const
{
    struct stat status;
    if (fstatat(m_state->descriptor, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? EntryKind::none : EntryKind::file;
    return S_ISDIR(status.st_mode) ? EntryKind::directory : EntryKind::file;
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
    if (m_state->isKnown && !(m_state->status.st_mode & S_IWUSR))
        m_state->isModeChanged = fchmod(m_state->descriptor, (m_state->status.st_mode & 07777) | S_IWUSR) == 0;
}

void RemovalDirectory::restorePermission()
{
    // A refusal leaves the directory writable; there is nobody to tell.
    if (m_state->isModeChanged && fchmod(m_state->descriptor, m_state->status.st_mode & 07777) == 0)
        m_state->isModeChanged = false;
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
