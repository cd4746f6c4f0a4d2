#pragma once

#include <cstddef>
#include <vector>

namespace zorvel {
namespace test {

/// The blocks that the library takes from the suite and gives back. A test
/// program that lists counted_memory.cpp among its sources (and wraps the two
/// functions, see CMakeLists.txt) counts them. Giving a block back clears the
/// last error: whoever needs the code must have kept it before.
namespace counted_memory {

/// Counts from zero; with `exhausted` no block is to be had. The blocks that
/// are out at the end are freed.
class Scope
{
public:
    explicit Scope(bool exhausted = false);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    /// The sizes asked for, in order.
    const std::vector<std::size_t>& taken() const;
    /// The blocks that are out.
    std::size_t held() const;
    /// How often something was given back, null and foreign blocks included.
    std::size_t given() const;
    /// Whether something was given back that was no block of these.
    bool gaveForeign() const;
};

}  // namespace counted_memory
}  // namespace test
}  // namespace zorvel
