#include <zorvel/fsutil.h>

#include "fsutil/detail/walk_pattern.h"
#include "platform/directory.h"

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

namespace zorvel {
namespace fsutil {

namespace {

using platform::EntryKind;
using platform::RemovalDirectory;

/// How many levels keep their directory open at once.
const std::size_t openLevels = 64;

bool isGone(int code)
{
    return code == 0 || code == ENOENT;
}

/// Removes one entry by an operation that gives a code. What protects it is
/// taken off only when it is in the way, and put back when it stays.
template <class Operation>
bool removeProtected(const RemovalDirectory& parent, const char* name, Operation operation)
{
    if (isGone(operation()))
        return true;
    if (parent.allowRemovalOf(name)) {
        if (isGone(operation()))
            return true;
        parent.forbidRemovalOf(name);
    }
    // Over a network an operation may be done and its reply be lost.
    return parent.kind(name) == EntryKind::none;
}

bool removeFile(const RemovalDirectory& parent, const char* name)
{
    return removeProtected(parent, name, [&] { return parent.removeFile(name); });
}

bool removeDirectory(const RemovalDirectory& parent, const char* name, RemovalDirectory* child)
{
    return removeProtected(parent, name, [&] { return parent.removeDirectory(name, child); });
}

/// Removes one entry and all below it, without recursion: a tree may be deeper
/// than the stack and than the number of descriptors.
class SubtreeRemoval
{
public:
    explicit SubtreeRemoval(const RemovalDirectory& top) : m_top(top), m_isRemoved(false) {}

    /// Whether the entry is gone. What stays below it shows in the directory
    /// above, which cannot be removed then.
    bool run(const std::string& name)
    {
        remove(name);
        while (!m_levels.empty()) {
            if (m_levels.back().pending.empty())
                leave();
            else
                removeNext();
        }
        return m_isRemoved;
    }

private:
    /// A directory that is being emptied: its name in the level above and the
    /// names in it that are still to be removed.
    struct Level
    {
        std::string name;
        RemovalDirectory directory;
        std::vector<std::string> pending;
    };

    const RemovalDirectory& current() const { return m_levels.empty() ? m_top : m_levels.back().directory; }

    void removeNext()
    {
        const std::string name = std::move(m_levels.back().pending.back());
        m_levels.back().pending.pop_back();
        remove(name);
    }

    /// The result of the last entry handled is in the end that of the first.
    void remove(const std::string& name)
    {
        const EntryKind kind = current().kind(name.c_str());
        if (kind == EntryKind::directory)
            enter(name);
        else if (kind == EntryKind::directoryLink)
            m_isRemoved = removeDirectory(current(), name.c_str(), nullptr);
        else
            m_isRemoved = kind == EntryKind::none || removeFile(current(), name.c_str());
    }

    /// A directory that cannot be opened may be empty, and one that was swapped
    /// for a link meanwhile is not a directory to remove.
    void enter(const std::string& name)
    {
        Level level;
        if (level.directory.openChild(current(), name.c_str()) != 0) {
            m_isRemoved = removeDirectory(current(), name.c_str(), nullptr);
            return;
        }
        level.name = name;
        // What could not be listed shows in the end in the directory, which cannot be removed then.
        level.directory.list(level.pending);
        if (!level.pending.empty())
            level.directory.allowRemovalsInside();
        m_levels.push_back(std::move(level));
        if (m_levels.size() > openLevels)
            letGo(m_levels[m_levels.size() - 1 - openLevels].directory);
    }

    /// Nothing is removed in a level that is let go, and it may be for good:
    /// its mode must not wait for it to be found again.
    static void letGo(RemovalDirectory& directory)
    {
        directory.restorePermission();
        directory.suspend();
    }

    static bool takeUp(RemovalDirectory& directory, const RemovalDirectory& child)
    {
        if (!directory.resume(child))
            return false;
        directory.allowRemovalsInside();
        return true;
    }

    void leave()
    {
        Level level = std::move(m_levels.back());
        m_levels.pop_back();
        if (!m_levels.empty() && !takeUp(m_levels.back().directory, level.directory))
            abandon();
        else
            m_isRemoved = removeDirectory(current(), level.name.c_str(), &level.directory);
    }

    /// The tree was moved while the levels above were let go: none of them can
    /// be found again, and what is now in their place is not theirs. A level
    /// that goes puts its own mode back.
    void abandon()
    {
        m_levels.clear();
        m_isRemoved = false;
    }

    const RemovalDirectory& m_top;
    std::vector<Level> m_levels;
    bool m_isRemoved;
};

/// Whether looking for entries ended with certainty about them: they are known,
/// or there is nothing that the caller's pattern could name. A name longer than
/// the file system takes is that of nothing. Every other failure (descriptors
/// used up, a disk that cannot be read) tells nothing about what is there.
bool isCertain(int code)
{
    return code == 0 || code == ENOENT || code == ENOTDIR || code == EACCES || code == ENAMETOOLONG;
}

bool removeMatches(const WalkPattern& pattern)
{
    RemovalDirectory top;
    const int code = top.open(pattern.directory);
    if (code != 0)
        return isCertain(code);
    std::vector<std::string> names;
    bool isAllRemoved = isCertain(top.match(pattern.component, names));
    for (const std::string& name : names)
        isAllRemoved = SubtreeRemoval(top).run(name) && isAllRemoved;
    return isAllRemoved;
}

}  // namespace

}  // namespace fsutil
}  // namespace zorvel

bool zvRemoveRF(const char* pattern)
{
    zorvel::fsutil::WalkPattern resolved;
    // "." and roots resolve to nothing at depth 0: they can never be emptied by this.
    return !zorvel::fsutil::resolveWalkPattern(pattern, 0, resolved) || zorvel::fsutil::removeMatches(resolved);
}
