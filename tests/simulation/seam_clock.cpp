#include "platform/clock.h"
#include "platform/process.h"
#include "platform/wake_up.h"

#include "tests/simulation/process.h"

// The seam's clock and identifier of the process, for whichever simulated process asks.

namespace zorvel {
namespace platform {

boost::posix_time::ptime localTime()
{
    sim::Process* const process = sim::Process::current();
    return process ? process->clock() : boost::posix_time::ptime(boost::gregorian::date(2031, 1, 1));
}

boost::posix_time::ptime universalTime()
{
    return localTime();
}

std::int64_t universalSeconds()
{
    static const boost::posix_time::ptime epoch(boost::gregorian::date(1970, 1, 1));
    return (universalTime() - epoch).total_seconds();
}

void sleepFor(long milliseconds)
{
    sim::Process::current()->sleep(milliseconds * sim::millisecond);
}

bool sleepUnlessCalled(WakeUp& wakeUp, long milliseconds)
{
    sleepFor(milliseconds);
    return !wakeUp.isCalled();
}

bool sleepExactlyUnlessCalled(WakeUp& wakeUp, long microseconds)
{
    return sleepUnlessCalled(wakeUp, microseconds / 1000);
}

unsigned long processId()
{
    const sim::Process* const process = sim::Process::current();
    return process ? process->pid : 1;
}

}  // namespace platform
}  // namespace zorvel
