#pragma once

#include "tests/faults/mount/control.h"
#include "tests/faults/seam/scenario.h"

#include <string>
#include <vector>

namespace zorvel {
namespace test {
namespace fault_mount {

/// One way in which an operation of the mount fails. Without a code it is only
/// late: for the library it comes back after 5 seconds, and no more than five do.
struct Answer
{
    const char* name;
    int code;
    bool isDone;  ///< fails after it was done: a lost reply
};

/// All the ways in which an operation that the library has use for can fail.
const std::vector<Answer>& answersOf(Operation operation);

/// The call number `call` (from 1) of an operation, once or with all that
/// follow.
struct Fault
{
    Operation operation;
    std::size_t call;
    bool isForEver;
    Answer answer;
};

/// "create 3 EIO-done once".
std::string textOf(const Fault& fault);

/// What the seam made of it, as faults of its functions. A function that gave a
/// code gives, as a fault of the seam, that code.
seam::Faults faultsOfSeam(const Fault& fault, const seam_faults::Hits& hits);

/// How a scenario may end with a fault: as it is stated for what the seam made
/// of it, and as ever where the seam made nothing of it.
seam::Words allowedEndings(const seam::Scenario& scenario, const Fault& fault, const seam_faults::Hits& hits);

}  // namespace fault_mount
}  // namespace test
}  // namespace zorvel
