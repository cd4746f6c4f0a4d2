#include "tests/support/seam_faults.h"

#include <boost/thread/exceptions.hpp>

#include <new>

namespace zorvel {
namespace test {
namespace seam_faults {

namespace {

struct Plan
{
    bool isActive = false;
    bool hasFault = false;
    Fault fault = Fault();
    Counts counts = Counts();
    std::size_t failures = 0;
};

/// Each thread has a plan; those of timers never begin theirs.
thread_local Plan plan;

bool isDue(std::size_t call)
{
    const Fault& fault = plan.fault;
    return fault.forEver ? call >= fault.call && plan.failures < endOfForEver : call == fault.call;
}

}  // namespace

void begin(const Fault* fault)
{
    plan = Plan();
    plan.isActive = true;
    plan.hasFault = fault != nullptr;
    if (fault)
        plan.fault = *fault;
}

Counts end(std::size_t& failures)
{
    plan.isActive = false;
    failures = plan.failures;
    return plan.counts;
}

const Answer* next(Function function)
{
    if (!plan.isActive)
        return nullptr;
    const std::size_t call = ++plan.counts[function];
    if (!plan.hasFault || plan.fault.function != function || !isDue(call))
        return nullptr;
    ++plan.failures;
    return &plan.fault.answer;
}

void throwIfAsked(const Answer& answer)
{
    if (answer.effect == Effect::noMemory)
        throw std::bad_alloc();
    if (answer.effect == Effect::interrupted)
        throw boost::thread_interrupted();
    if (answer.effect == Effect::noThread)
        throw boost::thread_resource_error();
}

std::string textOf(const Fault& fault)
{
    return std::string(nameOf(fault.function)) + " " + std::to_string(fault.call) + " " + fault.answer.name +
           (fault.forEver ? " ever" : " once");
}

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel
