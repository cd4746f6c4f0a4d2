#include <zorvel/errors.h>
#include <zorvel/fsutil.h>

#include "fsutil/detail/path_buffer.h"
#include "fsutil/detail/walk_pattern.h"
#include "platform/files.h"
#include "suite/nqservices.h"

#include <cstring>

namespace zorvel {
namespace fsutil {

namespace {

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
        zvScopedResource<char*> list(listing(component), &qxFree);
        int count = 0;
        for (const char* name = list.get(); name && *name; name += std::strlen(name) + 1) {
            m_path.cut(directory);
            if (isSpecialName(name) || !m_path.append(name))
                continue;
            count += visit(depth, stopAtFirst);
            if (stopAtFirst)
                break;
        }
        m_path.cut(directory);
        return count;
    }

private:
    char* listing(const char* component)
    {
        return m_path.append(component) ? ioGetDirList(m_path.c_str(), 0) : nullptr;
    }

    /// Reports the entry in the buffer, a directory before what is in it.
    /// Only the top level can stop at the first entry.
    int visit(int depth, bool stopAtFirst)
    {
        const EntryKind kind = platform::entryKind(m_path.c_str());
        const bool isDirectory = kind == EntryKind::directory || kind == EntryKind::directoryLink;
        (isDirectory ? m_dirProc : m_fileProc)(m_path.c_str());
        if (stopAtFirst || depth <= 0 || kind != EntryKind::directory)
            return 1;
        return 1 + run("*", depth - 1, false);
    }

    PathBuffer m_path;
    const zvStringProcedure& m_fileProc;
    const zvStringProcedure& m_dirProc;
};

}  // namespace

}  // namespace fsutil
}  // namespace zorvel

int zvFindMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& fileProc,
                               const zvStringProcedure& dirProc, int depth, bool stopAtFirst)
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
