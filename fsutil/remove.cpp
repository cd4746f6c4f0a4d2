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
using platform::ListedEntry;
using platform::RemovalDirectory;

/// How many levels keep their directory open at once.
const std::size_t openLevels = 64;

bool isGone(int code)
{
    return code == 0 || code == ENOENT;
}

/// Removes one entry by an operation that gives a code and failed. What
/// protects it is taken off, and put back when it stays.
template <class Operation>
bool removeWithoutProtection(const RemovalDirectory& parent, const char* name, Operation operation)
{
    if (parent.allowRemovalOf(name)) {
        if (isGone(operation()))
            return true;
        parent.forbidRemovalOf(name);
    }
    // Over a network an operation may be done and its reply be lost.
    return parent.kind(name) == EntryKind::none;
}

bool removeProtectedFile(const RemovalDirectory& parent, const char* name)
{
    return removeWithoutProtection(parent, name, [&] { return parent.removeFile(name); });
}

bool removeFile(const RemovalDirectory& parent, const char* name)
{
    return isGone(parent.removeFile(name)) || removeProtectedFile(parent, name);
}

bool removeDirectory(const RemovalDirectory& parent, const char* name, RemovalDirectory* child)
{
    const auto remove = [&] { return parent.removeDirectory(name, child); };
    return isGone(remove()) || removeWithoutProtection(parent, name, remove);
}

/// Removes one entry and all below it, without recursion: a tree may be deeper
/// than the stack and than the number of descriptors.
class SubtreeRemoval
{
public:
    explicit SubtreeRemoval(const RemovalDirectory& top) : m_top(top), m_isRemoved(false) {}

    /// Whether the entry is gone. What stays below it shows in the directory
    /// above, which cannot be removed then.
    bool run(const ListedEntry& entry)
    {
        remove(entry);
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
    /// entries in it that are still to be removed.
    struct Level
    {
        std::string name;
        RemovalDirectory directory;
        std::vector<ListedEntry> pending;
    };

    const RemovalDirectory& current() const { return m_levels.empty() ? m_top : m_levels.back().directory; }

    void removeNext()
    {
        const ListedEntry entry = std::move(m_levels.back().pending.back());
        m_levels.back().pending.pop_back();
        remove(entry);
    }

    /// The result of the last entry handled is in the end that of the first.
    void remove(const ListedEntry& entry)
    {
        if (!removeAsListed(entry))
            removeAsFound(entry.name);
    }

    /// Does what is to be done if an entry still is what it was listed as.
    /// False, and nothing done, when it is not, or was not listed as anything.
    bool removeAsListed(const ListedEntry& entry)
    {
        if (entry.kind == EntryKind::directory)
            return enter(entry.name);
        return entry.kind == EntryKind::file && removeListedFile(entry.name.c_str());
    }

    /// No removal of a file removes anything else, so the look comes after it,
    /// and only when it failed.
    bool removeListedFile(const char* name)
    {
        m_isRemoved = isGone(current().removeFile(name));
        if (m_isRemoved)
            return true;
        const EntryKind kind = current().kind(name);
        m_isRemoved = kind == EntryKind::none || (kind == EntryKind::file && removeProtectedFile(current(), name));
        return m_isRemoved || kind == EntryKind::file;
    }

    void removeAsFound(const std::string& name)
    {
        const EntryKind kind = current().kind(name.c_str());
        if (kind == EntryKind::directory) {
            // One that cannot be opened may be empty, and one that was swapped for a link meanwhile is none to remove.
            if (!enter(name))
                m_isRemoved = removeDirectory(current(), name.c_str(), nullptr);
        } else if (kind == EntryKind::directoryLink)
            m_isRemoved = removeDirectory(current(), name.c_str(), nullptr);
        else
            m_isRemoved = kind == EntryKind::none || removeFile(current(), name.c_str());
    }

    /// Begins to empty a directory. False when it cannot be opened as one.
    bool enter(const std::string& name)
    {
        Level level;
        if (level.directory.openChild(current(), name.c_str()) != 0)
            return false;
        level.name = name;
        // What could not be listed shows in the end in the directory, which cannot be removed then.
        level.directory.list(level.pending);
        if (!level.pending.empty())
            level.directory.allowRemovalsInside();
        m_levels.push_back(std::move(level));
        if (m_levels.size() > openLevels)
            letGo(m_levels[m_levels.size() - 1 - openLevels].directory);
        return true;
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
    std::vector<ListedEntry> entries;
    bool isAllRemoved = isCertain(top.match(pattern.component, entries));
    for (const ListedEntry& entry : entries)
        isAllRemoved = SubtreeRemoval(top).run(entry) && isAllRemoved;
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
