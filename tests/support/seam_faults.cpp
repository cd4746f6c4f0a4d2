#include "tests/support/seam_faults.h"

#include <boost/thread/exceptions.hpp>

#include <limits>
#include <mutex>
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
    Record record = Record();
};

/// Each thread has a plan; those of timers never begin theirs.
thread_local Plan plan;

bool isDue(std::size_t call)
{
    const Fault& fault = plan.fault;
    return fault.forEver ? call >= fault.call && plan.record.failures < endOfForEver : call == fault.call;
}

std::size_t (*below)() = nullptr;
thread_local int depth = 0;
thread_local int hidden = 0;

/// What is asked for calls of all threads.
struct Order
{
    long code = 0;
    std::size_t left = 0;
    std::size_t calls = 0;
};

std::mutex guard;
Order orders[functionCount];

const Answer* nextOrder(Function function)
{
    thread_local Answer answer;
    const std::lock_guard<std::mutex> lock(guard);
    Order& order = orders[function];
    ++order.calls;
    if (order.left == 0)
        return nullptr;
    --order.left;
    answer = {"", order.code, Effect::notDone};
    return &answer;
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

Record end()
{
    plan.isActive = false;
    return std::move(plan.record);
}

void watchBelow(std::size_t (*failures)())
{
    below = failures;
}

std::size_t failuresBelow()
{
    return plan.isActive && below && depth == 0 ? below() : 0;
}

void noteIfHit(Function function, std::size_t before, long result)
{
    if (failuresBelow() != before)
        plan.record.hits.insert({function, result});
}

void failNext(Function function, int code, std::size_t times)
{
    const std::lock_guard<std::mutex> lock(guard);
    orders[function].code = code;
    orders[function].left = times;
}

void failAlways(Function function, int code)
{
    failNext(function, code, std::numeric_limits<std::size_t>::max());
}

void reset()
{
    const std::lock_guard<std::mutex> lock(guard);
    for (Order& order : orders)
        order = Order();
}

std::size_t calls(Function function)
{
    const std::lock_guard<std::mutex> lock(guard);
    return orders[function].calls;
}

Inside::Inside()
{
    ++depth;
}

Inside::~Inside()
{
    --depth;
}

HiddenKinds::HiddenKinds()
{
    ++hidden;
}

HiddenKinds::~HiddenKinds()
{
    --hidden;
}

bool areKindsHidden()
{
    return hidden != 0;
}

const Answer* next(Function function)
{
    if (depth != 0)
        return nullptr;
    if (!plan.isActive)
        return nextOrder(function);
    const std::size_t call = ++plan.record.counts[function];
    if (!plan.hasFault || plan.fault.function != function || !isDue(call))
        return nullptr;
    ++plan.record.failures;
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
