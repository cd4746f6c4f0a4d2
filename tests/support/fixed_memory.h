#pragma once

#include <cstddef>
#include <cstdint>

namespace zorvel {
namespace test {

/// Memory at an address whose lower 32 bits are chosen, up to the end of its
/// 64 KiB; they must be a multiple of that. Throws std::runtime_error where
/// the system has none.
class FixedMemory
{
public:
    explicit FixedMemory(std::uint32_t lowBits);
    ~FixedMemory();
    FixedMemory(const FixedMemory&) = delete;
    FixedMemory& operator=(const FixedMemory&) = delete;

    static const std::size_t size = 0x10000;
    char* address() const { return m_address; }

private:
    char* m_address;
};

}  // namespace test
}  // namespace zorvel
