#include "tests/support/failing_fs.h"

#include <zorvel/errors.h>

#include <new>

namespace zorvel {
namespace test {

const char failureDetail[] = "made to fail";

bool FailurePlan::covers(std::size_t number) const
{
    return persistence == Persistence::once ? number == from : number >= from && number <= until;
}

std::ostream& operator<<(std::ostream& out, const FailurePlan& plan)
{
    static const char* const names[] = {"false",          "no such directory", "permission denied", "file access error",
                                        "file not found", "out of memory"};
    return out << "operation " << plan.from << (plan.persistence == Persistence::once ? " once: " : " for ever: ")
               << names[static_cast<int>(plan.failure)];
}

void throwFailure(Failure failure)
{
    switch (failure) {
    case Failure::answersFalse: return;
    case Failure::noSuchDirectory: throw zvNoSuchDirectory(failureDetail);
    case Failure::permissionDenied: throw zvPermissionDenied(failureDetail);
    case Failure::fileAccessError: throw zvFileAccessError(failureDetail);
    case Failure::fileNotFound: throw zvFileNotFoundError(failureDetail);
    case Failure::outOfMemory: throw std::bad_alloc();
    }
}

void failByPlan(RecordingFs& fs, const FailurePlan& plan)
{
    fs.clearLog();
    fs.setScript([plan](const Operation& operation) -> boost::optional<bool> {
        if (!plan.covers(operation.number))
            return boost::none;
        throwFailure(plan.failure);
        return false;
    });
}

}  // namespace test
}  // namespace zorvel
