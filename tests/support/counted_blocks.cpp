#include "tests/support/counted_blocks.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

// The program is linked with --wrap for the three functions of C. A block that
// the C library made and the program frees counts as one less: only growth says
// something.

namespace {

std::atomic<long> blocks(0);

}  // namespace

namespace zorvel {
namespace test {

long blocksInUse()
{
    return blocks;
}

}  // namespace test
}  // namespace zorvel

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size)
{
    void* const block = __real_malloc(size);
    blocks += block != nullptr;
    return block;
}

void* __wrap_realloc(void* old, std::size_t size)
{
    void* const block = __real_realloc(old, size);
    blocks += old == nullptr && block != nullptr;
    return block;
}

void __wrap_free(void* block)
{
    blocks -= block != nullptr;
    __real_free(block);
}
}

#ifdef ZORVEL_COUNT_NEW

void* operator new(std::size_t size)
{
    if (void* const block = std::malloc(size ? size : 1))
        return block;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete[](void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    std::free(block);
}

#endif
