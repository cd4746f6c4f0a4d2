#include "dirlock/detail/unique_numbers.h"

#include "platform/process.h"

namespace zorvel {
namespace dirlock {

UniqueNumbers::UniqueNumbers(std::uint64_t processId)
    : m_value(static_cast<std::uint32_t>(processId % modulus)), m_step(m_value)
{
}

std::uint32_t UniqueNumbers::next()
{
    const std::lock_guard<std::mutex> turn(m_mutex);
    const std::uint32_t number = m_value;
    // Twice the modulus still fits 32 bits.
    m_value = (m_value + m_step) % modulus;
    return number;
}

UniqueNumbers& UniqueNumbers::ofProcess()
{
    static UniqueNumbers numbers(platform::processId());
    return numbers;
}

}  // namespace dirlock
}  // namespace zorvel
