#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace zorvel {
namespace platform {
namespace posix {

/// A page of the process's memory at which one semaphore after another can be
/// seen, and the handle of the one that is open there.
///
/// A place is never unmapped. Between two semaphores it is empty memory, all 0.
/// So a semaphore is found by its handle, and used, without a lock against the
/// thread that is just closing it: that one may at worst be met as a semaphore
/// of count 0 and maximum 0, which gives nothing and takes nothing.
///
/// A handle is the address of the place and, in the bits that no address has,
/// how often the place was taken. It is not given twice before the place was
/// taken half a billion times. A place that was given up is not taken again
/// before some hundreds of others were.
class SemaphorePlace
{
public:
    static const std::size_t size = 4096;

    /// A place of its own for the caller; null, with errno, when there is no
    /// memory. Thread-safe.
    static void* take();

    /// Empties a place and gives it up. Never fails: a place that cannot be
    /// emptied stays as it is and is not used again. Thread-safe.
    static void giveUp(void* place);

    /// Makes and opens the handle of a place that is taken.
    static void* openHandle(void* place);

    /// From here on the handle leads nowhere.
    static void closeHandle(void* handle);

    /// The place of a handle that is open, null for any other that was given
    /// once, and for null. Takes no lock. Thread-safe.
    static void* of(void* handle)
    {
        const Address wanted = reinterpret_cast<Address>(handle);
        const Address place = wanted & pageMask;
        if (place == 0 || blockOf(place).handle[indexOf(place)].load(std::memory_order_acquire) != wanted)
            return nullptr;
        return reinterpret_cast<void*>(place);
    }

private:
    typedef std::uintptr_t Address;

    static const Address placesInBlock = 64;
    static const Address blockSize = placesInBlock * size;

    /// Addresses of a process have 47 bits.
    static const int addressBits = 47;
    static const Address pageMask = (Address(1) << addressBits) - size;

    /// What is known of each place of a block, in its first page, which is no place. A block begins at a multiple of
    /// its size, so that it is found from each of its places.
    struct Block
    {
        std::atomic<Address> handle[placesInBlock];  ///< 0 while none is open
        std::uint32_t taken[placesInBlock];
        void* next[placesInBlock];  ///< of those at rest
    };
    static_assert(sizeof(Block) <= size, "it is the first page of the block");

    static Block& blockOf(Address place) { return *reinterpret_cast<Block*>(place & ~(blockSize - 1)); }
    static std::size_t indexOf(Address place) { return place % blockSize / size; }

    class FreePlaces;
    static FreePlaces& freePlaces();
    static Address makeBlock();
};

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
