#pragma once

#include <cstdint>
#include <mutex>

namespace zorvel {
namespace dirlock {

/// The numbers that tell the readers' files apart. They differ between the
/// processes of a machine because start and step are made from the process's
/// identifier; what still meets is told apart by exclusive creation. Any
/// thread may draw.
class UniqueNumbers
{
public:
    /// A prime: every step but 0 goes through all the numbers below it.
    static const std::uint32_t modulus = 2038074743;

    /// An identifier that is a multiple of the modulus gives the same number
    /// at every draw. That is accepted: no system hands one out.
    explicit UniqueNumbers(std::uint64_t processId);

    /// Less than the modulus.
    std::uint32_t next();

    /// The numbers of this process.
    static UniqueNumbers& ofProcess();

private:
    std::mutex m_mutex;
    std::uint32_t m_value;
    const std::uint32_t m_step;
};

}  // namespace dirlock
}  // namespace zorvel
