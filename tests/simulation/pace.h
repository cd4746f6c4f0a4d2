#pragma once

#include "tests/simulation/plan.h"
#include "tests/simulation/strands.h"

#include <functional>

namespace zorvel {
namespace sim {

/// How time passes for the strands, and who goes on. All calls but now() and
/// stir() are made by the strand that runs, about itself.
class Pace : public Order
{
public:
    virtual Time now() const = 0;

    /// Lets something happen at the server after `there`, and goes on when its
    /// answer came, after `back`. It happens also if the strand is stirred.
    virtual void exchange(Time there, Time back, std::function<void()> effect) = 0;

    /// Waits so long, or until it is stirred.
    virtual void sleep(Time duration) = 0;

    /// Waits until it is stirred.
    virtual void waitToBeStirred() = 0;

    /// Lets a strand begin after a time.
    virtual void begin(Strand& strand, Time after) = 0;

    /// Wakes a strand from whatever it waits for.
    virtual void stir(Strand& strand) = 0;

    /// Lets something happen, whoever runs then.
    virtual void later(Time after, std::function<void()> event) = 0;

    /// Whether time stands still, so that every wait is only a turn of others
    /// and a timer calls once at most, at any moment.
    virtual bool isTimeless() const { return false; }

    /// Tells what the strand that runs has learnt from its exchange.
    virtual void learnt(std::uint64_t) {}

    /// Tells that the strand that runs knows nothing any more but this.
    virtual void beginsAnew(std::uint64_t) {}
};

}  // namespace sim
}  // namespace zorvel
