#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace zorvel {
namespace sim {

std::uint64_t mixed(std::uint64_t value);

/// Numbers for whoever makes a plan: a stream that the seed gives.
class Dice
{
public:
    explicit Dice(std::uint64_t seed) : m_state(seed) {}

    /// From 0 to bound - 1.
    std::uint64_t below(std::uint64_t bound) { return next() % bound; }
    std::int64_t between(std::int64_t low, std::int64_t high)
    {
        return low + static_cast<std::int64_t>(below(static_cast<std::uint64_t>(high - low) + 1));
    }
    bool odds(unsigned perThousand) { return below(1000) < perThousand; }

private:
    std::uint64_t next() { return mixed(m_state += 0x9E3779B97F4A7C15u); }

    std::uint64_t m_state;
};

/// What befalls the steps of a schedule, step by step. Each strand has a row
/// of draws of its own, so what befalls one does not depend on what the others
/// do, and a draw can be taken back without changing the rest: that is how a
/// schedule shrinks.
class Choices
{
public:
    /// A strand and the number of its draw.
    typedef std::uint64_t Key;

    explicit Choices(std::uint64_t seed) : m_seed(seed), m_only(nullptr) {}

    /// Nothing but these befalls. The set must outlive this object.
    void allowOnly(const std::set<Key>& keys) { m_only = &keys; }

    /// Zero (nothing out of the ordinary), but in so many of a thousand cases
    /// a number from 1 to bound.
    std::uint64_t draw(std::uint32_t strand, unsigned perThousand, std::uint64_t bound);

    /// Those that were not zero.
    const std::vector<Key>& taken() const { return m_taken; }

private:
    const std::uint64_t m_seed;
    const std::set<Key>* m_only;
    std::map<std::uint32_t, std::uint32_t> m_counts;
    std::vector<Key> m_taken;
};

}  // namespace sim
}  // namespace zorvel
