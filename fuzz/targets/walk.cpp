// The directory walk, and what is built on it, with any pattern in a small tree of real files.
//
// Input: what is asked ('0' the walk, '1' whether there is a match, '2' the size), codeset ('0' C, '1' Shift_JIS),
// depth ('0' to '4'), stop at the first ('0' no, '1' yes), a pattern that may be stretched ('0': it is not).

#include "fsutil/match.h"
#include "fuzz/naive/separators.h"
#include "fuzz/naive/walk.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/locales.h"
#include "fuzz/support/require.h"

#include <zorvel/fsutil.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

using namespace zorvel;

namespace {

using naive::Entry;

/// The tree in memory. The names hold wild cards, blanks, dots, second bytes
/// with the value of '\', and '\' itself.
void fill(Entry& tree)
{
    tree.kind = Entry::directory;
    tree.parent = nullptr;
    tree.add(Entry::directory, "other").add(Entry::file, "z");
    Entry& here = tree.add(Entry::directory, "here");
    for (const char* name : {"a", "b.txt", "B.TXT", "c d", " x", "x.", ".hidden", "st*r", "\x95\\", "back\\slash"})
        here.add(Entry::file, name);
    Entry& directory = here.add(Entry::directory, "dir");
    directory.add(Entry::file, "a");
    Entry& sub = directory.add(Entry::directory, "sub");
    sub.add(Entry::directory, "deep").add(Entry::file, "bottom");
    sub.add(Entry::link, "up", "deep");
    here.add(Entry::directory, "empty");
    here.add(Entry::directory, "c:").add(Entry::file, "inside");
    here.add(Entry::directory, "\x83\\").add(Entry::file, "y");
    here.add(Entry::link, "link", "dir");
    here.add(Entry::link, "filelink", "b.txt");
    here.add(Entry::link, "lost", "nowhere");
}

/// Makes the tree on disk.
void make(const Entry& entry, const std::filesystem::path& path)
{
    if (entry.kind == Entry::file)
        std::ofstream(path) << std::string(entry.size(), '.');
    else if (entry.kind == Entry::link)
        std::filesystem::create_symlink(entry.target, path);
    else
        std::filesystem::create_directory(path);
    for (const Entry& child : entry.entries)
        make(child, path / child.name);
}

/// The tree, on disk for as long as the program runs.
struct Scene
{
    Scene() : path(std::filesystem::temp_directory_path() / ("zorvel-fuzz-" + std::to_string(std::random_device()())))
    {
        fill(tree);
        make(tree, path);
        std::filesystem::current_path(path / "here");
    }
    ~Scene()
    {
        std::filesystem::current_path(path.parent_path());
        std::filesystem::remove_all(path);
    }

    Entry tree;
    std::filesystem::path path;
};

Scene& scene()
{
    static Scene all;
    return all;
}

/// Paths from the root lead into the tree: nothing else is known there.
std::string intoTree(const std::string& pattern)
{
    const bool absolute = !pattern.empty() && naive::isSeparator(pattern[0]) && !naive::isRoot(pattern);
    if (!absolute)
        return pattern;
    std::string path = scene().path.string();
    std::replace(path.begin(), path.end(), '/', '\\');
    return path + pattern;
}

/// Notes what it is called with.
class Recorder : public zvStringProcedure
{
public:
    Recorder(std::vector<naive::Found>& found, bool directory) : m_found(found), m_directory(directory) {}
    void operator()(const char* path) const override { m_found.push_back({m_directory, path}); }

private:
    std::vector<naive::Found>& m_found;
    bool m_directory;
};

std::string shownAll(const std::multiset<naive::Found>& found)
{
    std::string text;
    for (const naive::Found& one : found)
        text += (one.directory ? "\n    directory " : "\n    file ") + fuzz::shown(one.path);
    return text;
}

/// A directory comes before what is in it.
void checkOrder(const std::vector<naive::Found>& found)
{
    for (std::size_t i = 0; i < found.size(); ++i) {
        for (std::size_t j = i + 1; j < found.size(); ++j)
            fuzz::require(found[i].path.compare(0, found[j].path.size() + 1, found[j].path + "\\") != 0, "the order");
    }
}

void checkWalk(const std::string& pattern, int depth, bool stopAtFirst, const naive::TreeWalk& expected)
{
    fuzz::HeapText text = fuzz::HeapText::terminated(pattern);
    std::vector<naive::Found> found;
    const int count =
        zvFindMatchingFilesAndDirs(text.data(), Recorder(found, false), Recorder(found, true), depth, stopAtFirst);
    fuzz::requireSame(found.size(), static_cast<std::size_t>(count), "the result is the number of calls");
    const std::multiset<naive::Found> sorted(found.begin(), found.end());
    if (!stopAtFirst && sorted != expected.found())
        fuzz::reportDifference(pattern.c_str(), shownAll(expected.found()), shownAll(sorted));
    checkOrder(found);
    if (!stopAtFirst)
        return;
    fuzz::requireSame(std::min<std::size_t>(1, expected.topCount()), found.size(), "one call or none");
    fuzz::require(found.empty() || expected.found().count(found[0]) > 0, "the first is one of those that match");
}

/// Whether there is a match, asked in both ways.
void checkMatch(const std::string& pattern, const naive::TreeWalk& expected)
{
    fuzz::HeapText text = fuzz::HeapText::terminated(pattern);
    fuzz::requireSame(expected.topCount() > 0, zvMatchingFileOrDirExists(text.data()), "zvMatchingFileOrDirExists");
    bool found = false;
    findMatch(text.data(), found);
    fuzz::requireSame(expected.topCount() > 0, found, "findMatch");
}

void checkSize(const std::string& directory, naive::TreeWalk& walk, naive::LeadTest isLead)
{
    const std::string separator = naive::endsInSeparator(directory, isLead) ? "" : "\\";
    const std::string pattern = directory.empty() ? "" : directory + separator + "*";
    if (!walk.run(pattern, 1024, isLead))
        return;
    fuzz::HeapText text = fuzz::HeapText::terminated(directory);
    fuzz::requireSame(walk.totalSize(), static_cast<std::size_t>(zvGetDirectorySize(text.data())), "size");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const std::size_t question = input.choice(3);
    const naive::LeadTest isLead = fuzz::chooseCodeset(input);
    const int depth = static_cast<int>(input.choice(5));
    const bool stopAtFirst = input.choice(2) == 1;
    const std::string pattern = intoTree(fuzz::untilNul(fuzz::stretchedText(input, {1016})));

    naive::TreeWalk walk(scene().tree, scene().path.string(), *scene().tree.find("here"));
    if (question == 2)
        checkSize(pattern, walk, isLead);
    else if (walk.run(pattern, question == 0 ? depth : 0, isLead))
        question == 0 ? checkWalk(pattern, depth, stopAtFirst, walk) : checkMatch(pattern, walk);
    return 0;
}
