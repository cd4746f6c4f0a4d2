#include "platform/posix/semaphore_place.h"

#include <mutex>

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zorvel {
namespace platform {
namespace posix {
namespace {

const unsigned placesAtRest = 256;

const int emptyMemory = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;

void* mapEmpty(std::size_t bytes)
{
    return ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, emptyMemory, -1, 0);
}

/// Puts an empty page at a place. The bare system call, because sanitizers take
/// the C library's for a write of every byte, and other threads may be using
/// the place just now: they go on with one page or with the other.
bool replaceByEmptyPage(void* place)
{
    return ::syscall(SYS_mmap, place, SemaphorePlace::size, PROT_READ | PROT_WRITE, emptyMemory | MAP_FIXED, -1, 0) !=
           -1;
}

}  // namespace

/// A block of new places, or 0. What is mapped too much for the sake of its beginning goes back.
SemaphorePlace::Address SemaphorePlace::makeBlock()
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
class SemaphorePlace::FreePlaces
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
        m_unused += size;
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
        m_unused = block + size;
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
SemaphorePlace::FreePlaces& SemaphorePlace::freePlaces()
{
    static FreePlaces* const places = new FreePlaces;
    return *places;
}

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
    const Address handle = address | taken % size | taken / size << addressBits;
    block.handle[indexOf(address)].store(handle, std::memory_order_release);
    return reinterpret_cast<void*>(handle);
}

void SemaphorePlace::closeHandle(void* handle)
{
    const Address place = reinterpret_cast<Address>(handle) & pageMask;
    blockOf(place).handle[indexOf(place)].store(0, std::memory_order_release);
}

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
