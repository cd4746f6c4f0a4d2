#include "fuzz/naive/walk.h"

#include "fuzz/naive/canonical.h"
#include "fuzz/naive/kpath.h"
#include "fuzz/naive/wildcard.h"

namespace zorvel {
namespace naive {

Entry& Entry::add(Kind added, const std::string& addedName, const std::string& addedTarget)
{
    entries.push_back({addedName, added, addedTarget, {}, this});
    return entries.back();
}

Entry* Entry::find(const std::string& wanted)
{
    for (Entry& entry : entries) {
        if (entry.name == wanted)
            return &entry;
    }
    return nullptr;
}

Entry* Entry::behind()
{
    return kind == link ? parent->find(target) : this;
}

bool TreeWalk::run(const std::string& pattern, int depth, LeadTest isLead)
{
    m_isLead = isLead;
    m_found.clear();
    m_topCount = 0;
    m_totalSize = 0;
    if (pattern.empty() || pattern.size() > 1024)
        return true;
    if (pattern == "." || pattern == ".\\" || pattern == "./")
        return depth < 1 || walk("", "*", depth - 1);
    if (isRoot(pattern))
        return depth < 1 || walk(washed(pattern), "*", depth - 1);
    SeparatedPath parts = separated(pattern, isLead);
    if (parts.directory.find('*') != std::string::npos)
        return true;
    if (parts.name.empty())
        parts = separated(parts.directory, isLead);
    if (parts.name.empty() || parts.name == "." || parts.name == "..")
        return true;
    return walk(washed(parts.directory), parts.name, depth);
}

bool TreeWalk::walk(const std::string& directory, const std::string& component, int depth)
{
    Entry* entry = nullptr;
    if (!resolve(nativePath(directory, m_isLead), entry))
        return false;
    if (entry != nullptr && entry->kind == Entry::directory)
        list(*entry, directory, component, depth, true);
    return true;
}

/// The directory that a path leads to, or null. False where it leaves the tree.
bool TreeWalk::resolve(const std::string& native, Entry*& entry) const
{
    std::string rest = native;
    entry = &m_start;
    if (!native.empty() && native[0] == '/') {
        if ((native + "/").compare(0, m_path.size() + 1, m_path + "/") != 0)
            return false;
        rest = native.substr(m_path.size());
        entry = &m_root;
    }
    for (const std::string& name : split(rest, '/', &noLeadByte)) {
        if (name.empty())
            continue;
        if (!entry->isDirectory()) {
            entry = nullptr;
            return true;
        }
        entry = entry->behind();
        if (name == "." || name == "..") {
            entry = name == "." ? entry : entry->parent;
            if (entry == nullptr)
                return false;
            continue;
        }
        entry = entry->find(name);
        if (entry == nullptr)
            return true;
    }
    entry = entry->isDirectory() ? entry->behind() : nullptr;
    return true;
}

void TreeWalk::list(Entry& directory, const std::string& path, const std::string& component, int depth, bool top)
{
    for (Entry& entry : directory.entries) {
        const bool named = nativePath(entry.name, m_isLead) == entry.name;
        const bool matches = hasWildcards(component) ? matchesWildcards(component, entry.name, m_isLead)
                                                     : nativePath(component, m_isLead) == entry.name;
        // No path of the library can name an entry with a separator in it.
        if (named && matches)
            report(entry, concatenated(path, entry.name, m_isLead), depth, top);
    }
}

/// A link to a directory is reported as one and not entered.
void TreeWalk::report(Entry& entry, const std::string& path, int depth, bool top)
{
    m_found.insert({entry.isDirectory(), path});
    m_topCount += top ? 1 : 0;
    m_totalSize += entry.behind() == nullptr ? 0 : entry.behind()->size();
    if (depth > 0 && entry.kind == Entry::directory)
        list(entry, path, "*", depth - 1, false);
}

}  // namespace naive
}  // namespace zorvel
