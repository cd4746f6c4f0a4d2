#pragma once

#include "fuzz/naive/characters.h"

#include <deque>
#include <set>

namespace zorvel {
namespace naive {

/// An entry of a tree of files that is kept in memory.
struct Entry
{
    enum Kind
    {
        file,
        directory,
        link
    };

    std::string name;
    Kind kind;
    std::string target;  ///< of a link: the name of an entry beside it, or of nothing
    std::deque<Entry> entries;
    Entry* parent;

    Entry& add(Kind added, const std::string& addedName, const std::string& addedTarget = std::string());
    Entry* find(const std::string& wanted);
    /// What a link leads to, or the entry itself; null for a lost link.
    Entry* behind();
    bool isDirectory() { return behind() != nullptr && behind()->kind == directory; }
    /// Only files have one: it follows from the name.
    std::size_t size() const { return kind == file ? 3 * name.size() + 1 : 0; }
};

/// One callback of a walk.
struct Found
{
    bool directory;
    std::string path;

    bool operator<(const Found& other) const
    {
        return path != other.path ? path < other.path : directory < other.directory;
    }
    bool operator==(const Found& other) const { return path == other.path && directory == other.directory; }
};

/// Walks the tree in memory as the library walks the one on disk.
class TreeWalk
{
public:
    /// root: the tree, found on disk at an absolute path in the system's form;
    /// start: the directory in it that is the current one.
    TreeWalk(Entry& root, const std::string& path, Entry& start) : m_root(root), m_path(path), m_start(start) {}

    /// What a pattern gives, sorted; with stopAtFirst everything that may come
    /// first. False when the pattern leads out of the tree.
    bool run(const std::string& pattern, int depth, LeadTest isLead);
    const std::multiset<Found>& found() const { return m_found; }
    /// How many of those found are at the top, matched by the pattern.
    std::size_t topCount() const { return m_topCount; }
    /// The sizes of the files found; a link to a file has the file's.
    std::size_t totalSize() const { return m_totalSize; }

private:
    bool walk(const std::string& directory, const std::string& component, int depth);
    bool resolve(const std::string& native, Entry*& entry) const;
    void list(Entry& directory, const std::string& path, const std::string& component, int depth, bool top);
    void report(Entry& entry, const std::string& path, int depth, bool top);

    Entry& m_root;
    std::string m_path;
    Entry& m_start;
    LeadTest m_isLead = nullptr;
    std::multiset<Found> m_found;
    std::size_t m_topCount = 0;
    std::size_t m_totalSize = 0;
};

}  // namespace naive
}  // namespace zorvel
