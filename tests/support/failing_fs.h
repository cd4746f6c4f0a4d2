#pragma once

#include "tests/support/recording_fs.h"

#include <cstddef>
#include <limits>
#include <ostream>

namespace zorvel {
namespace test {

/// How an operation fails without being done.
enum class Failure
{
    answersFalse,  ///< yes-no operations only
    noSuchDirectory,
    permissionDenied,
    fileAccessError,
    fileNotFound,
    outOfMemory,  ///< std::bad_alloc, which is none of the family
};

enum class Persistence
{
    once,     ///< the Nth operation fails, the next ones work
    forEver,  ///< the Nth operation fails and every one after it
};

/// Which operations fail, counted from 1 over all kinds.
struct FailurePlan
{
    FailurePlan(std::size_t first, Persistence how, Failure what) : from(first), persistence(how), failure(what) {}

    std::size_t from;
    Persistence persistence;
    Failure failure;
    /// The last operation that fails for ever.
    std::size_t until = std::numeric_limits<std::size_t>::max();

    bool covers(std::size_t number) const;
};

std::ostream& operator<<(std::ostream& out, const FailurePlan& plan);

/// The detail that every thrown failure carries.
extern const char failureDetail[];

/// Throws the exception of a failure; nothing for answersFalse.
void throwFailure(Failure failure);

/// Makes a file system fail by a plan, from its next operation on. It takes
/// the place of its script; its hook stays.
void failByPlan(RecordingFs& fs, const FailurePlan& plan);

}  // namespace test
}  // namespace zorvel
