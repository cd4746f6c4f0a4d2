#pragma once

#include <zorvel/fsutil.h>

#include "platform/path_rules.h"
#include "tests/support/temporary_tree.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// Keeps what it is called with, with the tree's root taken off the front.
class Recorder : public zvStringProcedure
{
public:
    Recorder(std::vector<std::string>& calls, const std::string& mark, const std::string& root = std::string())
        : m_calls(calls), m_mark(mark), m_root(root)
    {
    }

    void operator()(const char* path) const override
    {
        const std::string text(path);
        const bool isBelow = !m_root.empty() && text.compare(0, m_root.size() + 1, m_root + '\\') == 0;
        m_calls.push_back(m_mark + (isBelow ? text.substr(m_root.size() + 1) : text));
    }

private:
    std::vector<std::string>& m_calls;
    std::string m_mark;
    std::string m_root;
};

/// What a walk reports: "f:" and "d:" before the paths, in order of the calls.
struct WalkResult
{
    int count;
    std::vector<std::string> calls;
};

inline WalkResult walk(const char* pattern, int depth, bool stopAtFirst = false,
                       const std::string& root = std::string())
{
    WalkResult result;
    result.count = zvFindMatchingFilesAndDirs(pattern, Recorder(result.calls, "f:", root),
                                              Recorder(result.calls, "d:", root), depth, stopAtFirst);
    return result;
}

/// Below a tree, sorted.
inline std::vector<std::string> found(const TemporaryTree& tree, const std::string& pattern, int depth = 0)
{
    std::vector<std::string> calls = walk(tree.path(pattern).c_str(), depth, false, tree.root()).calls;
    std::sort(calls.begin(), calls.end());
    return calls;
}

typedef std::vector<std::string> Names;

/// Makes a directory the current one for a while.
class CurrentDirectory
{
public:
    explicit CurrentDirectory(const std::string& path) : m_before(std::filesystem::current_path())
    {
        std::string native(path);
        std::replace(native.begin(), native.end(), '\\', '/');
        std::filesystem::current_path(native);
    }
    ~CurrentDirectory() { std::filesystem::current_path(m_before); }

    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;

private:
    std::filesystem::path m_before;
};

/// A path of a tree for the standard library.
inline std::filesystem::path standardPath(const TemporaryTree& tree, const std::string& relative)
{
    std::string native = tree.path(relative);
    std::replace(native.begin(), native.end(), '\\', '/');
    return std::filesystem::path(native);
}

/// Whether paths have drives: where they do, the system is Windows.
inline bool hasDrives()
{
    return platform::drivePrefixLength("C:\\") == 2;
}

}  // namespace test
}  // namespace zorvel
