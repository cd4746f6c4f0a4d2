#pragma once

#include "bench/files/tree.h"

#include <string>
#include <vector>

namespace zorvel {
namespace bench {

/// Trees that are made to be removed, all of all pools before the first is
/// taken: some file systems search long for a place for a new file while many
/// have gone in the last minutes.
class TreePool
{
public:
    TreePool(const std::string& name, const Tree& tree, std::size_t count);
    ~TreePool();

    TreePool(const TreePool&) = delete;
    TreePool& operator=(const TreePool&) = delete;

    /// The path of a tree that nobody had before.
    std::string take();

private:
    std::string make();

    std::string m_name;
    Tree m_tree;
    std::size_t m_count;
    std::size_t m_made;
    std::vector<std::string> m_ready;
};

}  // namespace bench
}  // namespace zorvel
