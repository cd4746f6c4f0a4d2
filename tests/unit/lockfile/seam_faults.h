#pragma once

#include <cstddef>

/// Operations of the seam that fail when a test wants them to. The library's
/// calls of them come here first (the program is linked with --wrap).
namespace zorvel {
namespace test {
namespace seam_faults {

enum Operation
{
    removeFile,
    modificationTime,
    open,
    write,
    flush,
    search,
    searchEnd,
    operationCount
};

/// Lets the next `times` calls of an operation fail with a code of the
/// runtime; nothing is done by them.
void failNext(Operation operation, int code, std::size_t times);

/// Every call fails from now on.
void failAlways(Operation operation, int code);

/// No failure is planned any more, and nothing has been called.
void reset();

/// Calls since reset(), those that failed too.
std::size_t calls(Operation operation);

/// Calls reset() at both ends of a test.
class Scope
{
public:
    Scope() { reset(); }
    ~Scope() { reset(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel
