#include "tests/unit/modules/counted_memory.h"

#include "tests/support/system_facts.h"

#include <set>

void* realMalloc(std::size_t size) __asm__(ZORVEL_REAL_MALLOC);
void* wrappedMalloc(std::size_t size) __asm__(ZORVEL_WRAPPED_MALLOC);
void realFree(void* memory) __asm__(ZORVEL_REAL_FREE);
void wrappedFree(void* memory) __asm__(ZORVEL_WRAPPED_FREE);

namespace zorvel {
namespace test {
namespace counted_memory {

namespace {

struct State
{
    bool exhausted = false;
    std::vector<std::size_t> taken;
    std::set<void*> held;
    std::size_t given = 0;
    bool gaveForeign = false;
};

State& state()
{
    static State only;
    return only;
}

}  // namespace

Scope::Scope(bool exhausted)
{
    state() = State();
    state().exhausted = exhausted;
}

Scope::~Scope()
{
    for (void* const block : state().held)
        realFree(block);
    state() = State();
}

const std::vector<std::size_t>& Scope::taken() const
{
    return state().taken;
}

std::size_t Scope::held() const
{
    return state().held.size();
}

std::size_t Scope::given() const
{
    return state().given;
}

bool Scope::gaveForeign() const
{
    return state().gaveForeign;
}

}  // namespace counted_memory
}  // namespace test
}  // namespace zorvel

namespace counted = zorvel::test::counted_memory;

void* wrappedMalloc(std::size_t size)
{
    counted::State& state = counted::state();
    state.taken.push_back(size);
    void* const memory = state.exhausted ? nullptr : realMalloc(size);
    if (memory)
        state.held.insert(memory);
    return memory;
}

/// What is none of these blocks is not handed on, so that a test can say so.
void wrappedFree(void* memory)
{
    counted::State& state = counted::state();
    ++state.given;
    if (state.held.erase(memory) > 0)
        realFree(memory);
    else
        state.gaveForeign = state.gaveForeign || memory;
    zorvel::test::clearLastError();
}
