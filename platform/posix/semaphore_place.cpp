#include "platform/posix/semaphore_place.h"

#include <atomic>
#include <mutex>

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

typedef std::uintptr_t Address;

const Address pageSize = SemaphorePlace::size;
const Address placesInBlock = 64;
const Address blockSize = placesInBlock * pageSize;

/// Addresses of a process have 47 bits.
const int addressBits = 47;
const Address pageMask = (Address(1) << addressBits) - pageSize;

const unsigned placesAtRest = 256;

/// What is known of each place of a block, in its first page, which is no place. A block begins at a multiple of its
/// size, so that it is found from each of its places.
struct Block
{
    std::atomic<Address> handle[placesInBlock];  ///< 0 while none is open
    std::uint32_t taken[placesInBlock];
    void* next[placesInBlock];  ///< of those at rest
};
static_assert(sizeof(Block) <= pageSize, "it is the first page of the block");

Block& blockOf(Address place)
{
    return *reinterpret_cast<Block*>(place & ~(blockSize - 1));
}

std::size_t indexOf(Address place)
{
    return place % blockSize / pageSize;
}

const int emptyMemory = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;

void* mapEmpty(std::size_t size)
{
    return ::mmap(nullptr, size, PROT_READ | PROT_WRITE, emptyMemory, -1, 0);
}

/// Puts an empty page at a place. The bare system call, because sanitizers take
/// the C library's for a write of every byte, and other threads may be using
/// the place just now: they go on with one page or with the other.
bool replaceByEmptyPage(void* place)
{
    return ::syscall(SYS_mmap, place, pageSize, PROT_READ | PROT_WRITE, emptyMemory | MAP_FIXED, -1, 0) != -1;
}

/// A block of new places, or 0. What is mapped too much for the sake of its beginning goes back.
Address makeBlock()
{
    void* const memory = mapEmpty(2 * blockSize);
    if (memory == MAP_FAILED)
        return 0;
    const Address begin = reinterpret_cast<Address>(memory);
    const Address block = (begin + blockSize - 1) & ~(blockSize - 1);
    if (block != begin)
        ::munmap(memory, block - begin);
    ::munmap(reinterpret_cast<void*>(block + blockSize), begin + blockSize - block);
    return block;
}

/// The places that nobody has: those at rest, in the order in which they were given up, and those of the last block
/// that were never taken.
class FreePlaces
{
public:
    void* take()
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (m_resting > placesAtRest)
            return takeOldest();
        if (m_unused == m_end && !addBlock())
            return takeOldest();
        void* const place = reinterpret_cast<void*>(m_unused);
        m_unused += pageSize;
        return place;
    }

    void add(void* place)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        nextOf(place) = nullptr;
        (m_resting == 0 ? m_oldest : nextOf(m_latest)) = place;
        m_latest = place;
        ++m_resting;
    }

private:
    static void*& nextOf(void* place)
    {
        const Address address = reinterpret_cast<Address>(place);
        return blockOf(address).next[indexOf(address)];
    }

    void* takeOldest()
    {
        if (m_resting == 0)
            return nullptr;
        void* const place = m_oldest;
        m_oldest = nextOf(place);
        --m_resting;
        return place;
    }

    bool addBlock()
    {
        const Address block = makeBlock();
        if (block == 0)
            return false;
        m_unused = block + pageSize;
        m_end = block + blockSize;
        return true;
    }

    std::mutex m_mutex;
    Address m_unused = 0;
    Address m_end = 0;
    void* m_oldest = nullptr;
    void* m_latest = nullptr;
    unsigned m_resting = 0;
};

/// Never destroyed: semaphores of the application's static objects outlive ours.
FreePlaces& freePlaces()
{
    static FreePlaces* const places = new FreePlaces;
    return *places;
}

Address placeOf(Address handle)
{
    return handle & pageMask;
}

}  // namespace

void* SemaphorePlace::take()
{
    return freePlaces().take();
}

void SemaphorePlace::giveUp(void* place)
{
    if (replaceByEmptyPage(place))
        freePlaces().add(place);
}

void* SemaphorePlace::openHandle(void* place)
{
    const Address address = reinterpret_cast<Address>(place);
    Block& block = blockOf(address);
    const Address taken = ++block.taken[indexOf(address)];
    const Address handle = address | taken % pageSize | taken / pageSize << addressBits;
    block.handle[indexOf(address)].store(handle, std::memory_order_release);
    return reinterpret_cast<void*>(handle);
}

void SemaphorePlace::closeHandle(void* handle)
{
    const Address place = placeOf(reinterpret_cast<Address>(handle));
    blockOf(place).handle[indexOf(place)].store(0, std::memory_order_release);
}

void* SemaphorePlace::of(void* handle)
{
    const Address wanted = reinterpret_cast<Address>(handle);
    const Address place = placeOf(wanted);
    if (place == 0 || blockOf(place).handle[indexOf(place)].load(std::memory_order_acquire) != wanted)
        return nullptr;
    return reinterpret_cast<void*>(place);
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
