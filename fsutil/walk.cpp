#include <zorvel/fsutil.h>

#include "fsutil/detail/entry_list.h"
#include "fsutil/detail/path_buffer.h"
#include "fsutil/detail/walk_pattern.h"
#include "platform/files.h"

#include <cstring>
#include <exception>

namespace zorvel {
namespace fsutil {

namespace {

using platform::DirectorySearch;
using platform::EntryKind;

/// One walk. The buffer holds the directory that is being listed, shared by
/// all levels and rewritten in place; its size also bounds the recursion.
class Walk
{
public:
    Walk(const char* directory, const zvStringProcedure& fileProc, const zvStringProcedure& dirProc)
        : m_path(directory), m_fileProc(fileProc), m_dirProc(dirProc)
    {
    }

    /// The number of callbacks made.
    int run(const char* component, int depth, bool stopAtFirst)
    {
        const std::size_t directory = m_path.length();
        if (!m_path.append(component))
            return 0;
        const std::size_t name = m_path.length() - std::strlen(component);
        const int count = visitAll(EntryList(m_path.c_str()), name, depth, stopAtFirst);
        m_path.cut(directory);
        return count;
    }

private:
    /// False when the path is no directory itself, when it cannot be listed,
    /// and when memory is exhausted.
    static bool open(DirectorySearch& search, const char* path)
    {
        try {
            return search.openDirectory(path) == 0;
        } catch (const std::exception&) {
            return false;
        }
    }

    /// What is in the directory in the buffer, which was opened before.
    int runInside(DirectorySearch& search, int depth)
    {
        const std::size_t directory = m_path.length();
        if (!m_path.append("*"))
            return 0;
        const int count = visitAll(EntryList(search), m_path.length() - 1, depth, false);
        m_path.cut(directory);
        return count;
    }

    /// `name`: where in the buffer the names of the entries belong.
    int visitAll(EntryList list, std::size_t name, int depth, bool stopAtFirst)
    {
        EntryList::Entry entry;
        int count = 0;
        while ((count == 0 || !stopAtFirst) && list.next(entry)) {
            if (m_path.replaceFrom(name, entry.name, entry.length))
                count += visit(entry.kind, depth, stopAtFirst);
        }
        return count;
    }

    /// Reports the entry in the buffer, a directory before what is in it.
    /// Only the top level can stop at the first entry.
    int visit(EntryKind listed, int depth, bool stopAtFirst)
    {
        const bool isEntered = depth > 0 && !stopAtFirst;
        if (listed == EntryKind::directory && isEntered) {
            // What can be opened as a directory still is one: no other look is needed.
            DirectorySearch search;
            if (open(search, m_path.c_str())) {
                m_dirProc(m_path.c_str());
                return 1 + runInside(search, depth - 1);
            }
        }
        const EntryKind kind = listed == EntryKind::file ? listed : platform::entryKind(m_path.c_str());
        const bool isDirectory = kind == EntryKind::directory || kind == EntryKind::directoryLink;
        (isDirectory ? m_dirProc : m_fileProc)(m_path.c_str());
        return kind == EntryKind::directory && isEntered ? 1 + run("*", depth - 1, false) : 1;
    }

    PathBuffer m_path;
    const zvStringProcedure& m_fileProc;
    const zvStringProcedure& m_dirProc;
};

}  // namespace

}  // namespace fsutil
}  // namespace zorvel

int zvFindMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& fileProc, const zvStringProcedure& dirProc,
                               int depth, bool stopAtFirst)
{
    zorvel::fsutil::WalkPattern resolved;
    if (!zorvel::fsutil::resolveWalkPattern(pattern, depth, resolved))
        return 0;
    zorvel::fsutil::Walk walk(resolved.directory, fileProc, dirProc);
    return walk.run(resolved.component, resolved.depth, stopAtFirst);
}

bool zvMatchingFileOrDirExists(const char* pattern)
{
    const zvIgnoreString ignore;
    return zvFindMatchingFilesAndDirs(pattern, ignore, ignore, 0, true) == 1;
}
