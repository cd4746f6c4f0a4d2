#include <zorvel/fsutil.h>
#include <zorvel/paths.h>

#include "fsutil/detail/path_buffer.h"
#include "fsutil/detail/walk_pattern.h"
#include "platform/directory.h"

#include <cstring>
#include <exception>
#include <string>

namespace zorvel {
namespace fsutil {

namespace {

using platform::DirectorySearch;
using platform::EntryKind;

const int depthLimit = 1024;

/// The walk that zvDirectorySizeAdder makes, without its callbacks: nobody sees
/// in which order sizes are added, so each is asked for while its directory is
/// open. What cannot be listed adds nothing.
class SizeSum
{
public:
    explicit SizeSum(const char* directory) : m_path(directory), m_total(0) {}

    /// Never throws: exhausted memory ends the sum early.
    zvUInt64 run(const char* component, int depth)
    {
        try {
            addMatches(component, depth);
        } catch (const std::exception&) {
        }
        return m_total;
    }

private:
    void addMatches(const char* component, int depth)
    {
        DirectorySearch search;
        if (m_path.append(component) && search.open(m_path.c_str()) == 0)
            addAll(search, m_path.length() - std::strlen(component), depth);
    }

    /// What is in the directory in the buffer, not in what a link leads to that
    /// has taken its place.
    void addFolder(int depth)
    {
        const std::size_t directory = m_path.length();
        DirectorySearch search;
        if (search.openDirectory(m_path.c_str()) == 0 && m_path.append("*"))
            addAll(search, m_path.length() - 1, depth);
        m_path.cut(directory);
    }

    /// `name`: where in the buffer the names of the entries belong.
    void addAll(DirectorySearch& search, std::size_t name, int depth)
    {
        const std::string folders = addFiles(search, name);
        search.close();
        for (const char* folder = folders.c_str(); depth > 0 && *folder; folder += std::strlen(folder) + 1) {
            if (m_path.replaceFrom(name, folder, std::strlen(folder)))
                addFolder(depth - 1);
        }
    }

    /// Adds the sizes of the entries, and gives the names of the directories
    /// among them, each with its terminator.
    std::string addFiles(DirectorySearch& search, std::size_t name)
    {
        std::string folders;
        while (const char* const entry = search.next()) {
            const std::size_t length = std::strlen(entry);
            if (!isSpecialName(entry) && m_path.replaceFrom(name, entry, length) && !addEntry(search))
                folders.append(entry, length + 1);
        }
        return folders;
    }

    /// Adds the entry in the buffer, which the search gave last. False for a
    /// directory itself.
    bool addEntry(const DirectorySearch& search)
    {
        std::int32_t size = 0;
        EntryKind kind = search.listedKind();
        if (kind == EntryKind::file && search.size(size) == 0) {
            // A size of 2 GiB or more is negative and makes the total smaller.
            m_total += static_cast<zvUInt64>(static_cast<long long>(size));
            return true;
        }
        if (kind == EntryKind::none)
            kind = platform::entryKind(m_path.c_str());
        if (kind == EntryKind::file || kind == EntryKind::none)
            m_total += static_cast<zvUInt64>(zvGetFileSize(m_path.c_str()));
        return kind != EntryKind::directory;
    }

    PathBuffer m_path;
    zvUInt64 m_total;
};

}  // namespace

}  // namespace fsutil
}  // namespace zorvel

zvUInt64 zvGetDirectorySize(const char* dir)
{
    using namespace zorvel::fsutil;
    if (!dir || !*dir || strnlen(dir, patternLimit + 1) > patternLimit)
        return 0;
    PathBuffer pattern(dir);
    // The current directory and roots are entered by the walk's own rules. Elsewhere the pattern is joined by the rules
    // that the walk splits it by, whatever lead-byte test is installed: it means what is in the directory and never the
    // directory's neighbours.
    const bool isEntered = isCurrentDirectoryForm(dir) || zvIsRootDir(dir);
    WalkPattern resolved;
    if ((!isEntered && !pattern.append("*")) || !resolveWalkPattern(pattern.c_str(), depthLimit, resolved))
        return 0;
    return SizeSum(resolved.directory).run(resolved.component, resolved.depth);
}
