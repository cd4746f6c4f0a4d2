#pragma once

#include "tests/support/seam_faults.h"
#include "tests/support/system_facts.h"

#include "seam_symbols.h"

/// Defines what the library calls in place of a function of the seam, as a
/// function of the same parameters (members take their object first), and
/// declares the function itself as real_NAME.
#define ZORVEL_SEAM(function, result, ...)                                          \
    result real_##function(__VA_ARGS__) __asm__("__real_" ZORVEL_SEAM_##function);  \
    result wrap_##function(__VA_ARGS__) __asm__("__wrap_" ZORVEL_SEAM_##function);  \
    result wrap_##function(__VA_ARGS__)

namespace zorvel {
namespace test {
namespace seam_faults {

/// A call that gives a Result: the real one's, or the fault's. What fails
/// leaves a code as the last error.
template <class Result, class Call>
Result called(Function function, Call real)
{
    const Answer* const answer = next(function);
    if (!answer)
        return real();
    if (answer->effect == Effect::done)
        real();
    throwIfAsked(*answer);
    setLastError(codeOfDeniedAccess());
    return static_cast<Result>(answer->result);
}

/// The same for results that no number can be made into; a failure gives an
/// empty one.
template <class Result, class Call>
Result calledOrEmpty(Function function, Call real)
{
    const Answer* const answer = next(function);
    if (!answer)
        return real();
    throwIfAsked(*answer);
    setLastError(codeOfDeniedAccess());
    return Result();
}

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel
