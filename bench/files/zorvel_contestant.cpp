#include "bench/files/contestants.h"
#include "bench/files/tree.h"

#include <zorvel/fsutil.h>

#include <cstring>

namespace zorvel {
namespace bench {

namespace {

const int deep = 1000;

/// Counts what it is given, as a directory or not.
class Counter : public zvStringProcedure
{
public:
    Counter(Tally& tally, bool isForDirectories) : m_tally(tally), m_isForDirectories(isForDirectories) {}
    void operator()(const char* path) const override { m_tally.add(path, std::strlen(path), m_isForDirectories); }

private:
    Tally& m_tally;
    bool m_isForDirectories;
};

std::uint64_t walk(const std::string& path)
{
    Tally tally;
    zvFindMatchingFilesAndDirs((path + "/*").c_str(), Counter(tally, false), Counter(tally, true), deep, false);
    return tally.entries();
}

std::uint64_t size(const std::string& path)
{
    return zvGetDirectorySize(path.c_str());
}

std::uint64_t match(const std::string&)
{
    Tally tally;
    const Counter onFile(tally, false);
    const Counter onDirectory(tally, true);
    for (const std::string& folder : patternFolders())
        zvFindMatchingFilesAndDirs((folder + "/*.txt").c_str(), onFile, onDirectory, 0, false);
    return tally.entries();
}

std::uint64_t remove(const std::string& path)
{
    return zvRemoveRF(path.c_str());
}

std::uint64_t create(const std::string& path)
{
    return zvMkdirP(path.c_str());
}

}  // namespace

const std::vector<std::string>& patternFolders()
{
    static const std::vector<std::string> folders = [] {
        const Tree tree(amounts(isQuick()).looked);
        return foldersOf(keptTree(tree), tree);
    }();
    return folders;
}

Contestant zorvelItself()
{
    return {"zorvel", &walk, &size, &match, &remove, &create, &create};
}

}  // namespace bench
}  // namespace zorvel
