#include "tests/simulation/choices.h"

namespace zorvel {
namespace sim {

std::uint64_t mixed(std::uint64_t value)
{
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

std::uint64_t Choices::draw(std::uint32_t strand, unsigned perThousand, std::uint64_t bound)
{
    const Key key = (static_cast<Key>(strand) << 32) | m_counts[strand]++;
    const std::uint64_t number = mixed(m_seed + mixed(key));
    if (number % 1000 >= perThousand || bound == 0)
        return 0;
    if (m_only && m_only->count(key) == 0)
        return 0;
    m_taken.push_back(key);
    return 1 + (number / 1000) % bound;
}

}  // namespace sim
}  // namespace zorvel
