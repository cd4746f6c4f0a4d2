#include "bench/files/tree_pool.h"

#include <algorithm>
#include <iostream>

namespace zorvel {
namespace bench {

namespace {

std::vector<TreePool*> unmade;

}  // namespace

TreePool::TreePool(const std::string& name, const Tree& tree, std::size_t count)
    : m_name(name), m_tree(tree), m_count(count), m_made(0)
{
    unmade.push_back(this);
}

TreePool::~TreePool()
{
    unmade.erase(std::remove(unmade.begin(), unmade.end(), this), unmade.end());
    for (const std::string& path : m_ready)
        clear(path);
}

std::string TreePool::take()
{
    std::vector<TreePool*> pools;
    pools.swap(unmade);
    for (TreePool* const pool : pools) {
        std::cerr << "making " << pool->m_count << " trees of " << pool->m_tree.files << " files" << std::endl;
        while (pool->m_made < pool->m_count)
            pool->m_ready.push_back(pool->make());
    }
    if (m_ready.empty())
        return make();
    const std::string path = m_ready.back();
    m_ready.pop_back();
    return path;
}

std::string TreePool::make()
{
    const std::string path = inTreeRoot(m_name + '-' + std::to_string(++m_made));
    clear(path);
    makeTree(path, m_tree);
    return path;
}

}  // namespace bench
}  // namespace zorvel
