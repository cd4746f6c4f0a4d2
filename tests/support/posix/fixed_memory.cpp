#include "tests/support/fixed_memory.h"

#include <sys/mman.h>

#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

/// A null pointer where the system would only give another address. The
/// sanitizers leave the region to programs.
char* memoryAt(std::uintptr_t address)
{
    void* const wanted = reinterpret_cast<void*>(address);
    void* const got = mmap(wanted, FixedMemory::size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (got == wanted)
        return static_cast<char*>(got);
    if (got != MAP_FAILED)
        munmap(got, FixedMemory::size);
    return nullptr;
}

}  // namespace

FixedMemory::FixedMemory(std::uint32_t lowBits) : m_address(nullptr)
{
    for (std::uintptr_t high = 0x7f10; !m_address && high < 0x7f80; ++high)
        m_address = memoryAt(high << 32 | lowBits);
    if (!m_address)
        throw std::runtime_error("no memory at a chosen address");
}

FixedMemory::~FixedMemory()
{
    munmap(m_address, size);
}

}  // namespace test
}  // namespace zorvel
