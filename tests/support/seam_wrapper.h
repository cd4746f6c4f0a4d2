#pragma once

#include "tests/support/seam_faults.h"
#include "tests/support/system_facts.h"

#include "seam_symbols.h"

/// Defines what the library calls in place of a function of the seam, as a
/// function of the same parameters (members take their object first), and
/// declares the function itself as real_NAME.
#define ZORVEL_SEAM(function, result, ...)                                                                             \
  result real_##function(__VA_ARGS__) __asm__("__real_" ZORVEL_SEAM_##function);                                       \
  result wrap_##function(__VA_ARGS__) __asm__("__wrap_" ZORVEL_SEAM_##function);                                       \
  result wrap_##function(__VA_ARGS__)

namespace zorvel {
namespace test {
namespace seam_faults {

/// What a hit says of a result: its number, or whether there is one.
template <class Result>
long numberOf(const Result& result)
{
    return static_cast<long>(result);
}
inline long numberOf(const std::string& result)
{
    return !result.empty();
}
inline long numberOf(void* result)
{
    return result != nullptr;
}

template <class Call>
auto insideOf(Call call) -> decltype(call())
{
    const Inside inside;
    return call();
}

/// The real call, which something below may make fail.
template <class Call>
auto real(Function function, Call call) -> decltype(call())
{
    const std::size_t before = failuresBelow();
    auto result = insideOf(call);
    noteIfHit(function, before, numberOf(result));
    return result;
}

/// A call that gives a Result: the real one's, or the fault's. What fails
/// leaves a code as the last error.
template <class Result, class Call>
Result called(Function function, Call call)
{
    const Answer* const answer = next(function);
    if (!answer)
        return real(function, call);
    if (answer->effect == Effect::done)
        insideOf(call);
    throwIfAsked(*answer);
    setLastError(codeOfDeniedAccess());
    return static_cast<Result>(answer->result);
}

/// The same for results that no number can be made into; a failure gives an
/// empty one.
template <class Result, class Call>
Result calledOrEmpty(Function function, Call call)
{
    const Answer* const answer = next(function);
    if (!answer)
        return real(function, call);
    throwIfAsked(*answer);
    setLastError(codeOfDeniedAccess());
    return Result();
}

/// The same for what gives nothing; a failure does nothing.
template <class Call>
void calledOrNot(Function function, Call call)
{
    if (next(function))
        return;
    real(function, [&] {
        call();
        return true;
    });
}

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel
