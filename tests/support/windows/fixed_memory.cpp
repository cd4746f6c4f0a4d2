#include "tests/support/fixed_memory.h"

#include <windows.h>

#include <stdexcept>

namespace zorvel {
namespace test {

FixedMemory::FixedMemory(std::uint32_t lowBits) : m_address(nullptr)
{
    for (std::uintptr_t high = 0x10; !m_address && high < 0x80; ++high) {
        void* const wanted = reinterpret_cast<void*>(high << 32 | lowBits);
        m_address = static_cast<char*>(VirtualAlloc(wanted, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    }
    if (!m_address)
        throw std::runtime_error("no memory at a chosen address");
}

FixedMemory::~FixedMemory()
{
    VirtualFree(m_address, 0, MEM_RELEASE);
}

}  // namespace test
}  // namespace zorvel
