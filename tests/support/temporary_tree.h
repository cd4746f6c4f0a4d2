#pragma once

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A fresh directory of its own for a test, removed with all that is in it.
/// Paths are in the library's form. Everything here goes straight to the
/// system, never through the library under test; byte strings are in the
/// process's code page.
class TemporaryTree
{
public:
    TemporaryTree();
    ~TemporaryTree();

    TemporaryTree(const TemporaryTree&) = delete;
    TemporaryTree& operator=(const TemporaryTree&) = delete;

    /// Absolute, with '\' between names and none at the end.
    const std::string& root() const { return m_root; }

    /// root, '\', and a relative path.
    std::string path(const std::string& relative) const;

    void directory(const std::string& relative) const;
    void file(const std::string& relative, const std::string& content = std::string()) const;
    /// Makes `relative` a symbolic link to a path relative to the root. On
    /// Windows under Wine the link is made on the host below; Wine shows a link
    /// to a directory as a reparse point, a link to a file as that file, and a
    /// link to nothing not at all, and what removes or renames a link there
    /// acts on its target.
    void link(const std::string& target, const std::string& relative) const;

    /// Removes a directory with all that is in it.
    void removeDirectory(const std::string& relative) const;

    bool exists(const std::string& relative) const;
    std::string content(const std::string& relative) const;
    /// The names in a directory of the tree, sorted, without "." and "..".
    std::vector<std::string> names(const std::string& relative = std::string()) const;

    /// Moves the modification time of a file by seconds (negative: older).
    void age(const std::string& relative, long seconds) const;
    /// Modification time in seconds since 1970-01-01 UTC.
    long long modificationTime(const std::string& relative) const;
    void makeReadOnly(const std::string& relative) const;
    bool isReadOnly(const std::string& relative) const;

private:
    std::string m_root;
};

}  // namespace test
}  // namespace zorvel
