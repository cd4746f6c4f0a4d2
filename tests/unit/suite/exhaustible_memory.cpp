#include "tests/unit/suite/exhaustible_memory.h"

#include <cstdlib>
#include <new>

namespace {

/// How many more allocations succeed; negative: all of them.
int left = -1;

bool isExhausted()
{
    if (left > 0)
        --left;
    else if (left == 0)
        return true;
    return false;
}

}  // namespace

namespace zorvel {
namespace test {

Exhaustion::Exhaustion(int count)
{
    left = count;
}

Exhaustion::~Exhaustion()
{
    left = -1;
}

}  // namespace test
}  // namespace zorvel

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return isExhausted() ? nullptr : std::malloc(size ? size : 1);
}

void* operator new(std::size_t size)
{
    void* const memory = operator new(size, std::nothrow);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

extern "C" void* __real_realloc(void* memory, std::size_t size);

extern "C" void* __wrap_realloc(void* memory, std::size_t size)
{
    return isExhausted() ? nullptr : __real_realloc(memory, size);
}
