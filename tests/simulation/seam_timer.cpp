#include <zorvel/timer.h>

#include "platform/clock.h"
#include "tests/simulation/world.h"

#include <boost/make_shared.hpp>

#include <algorithm>

// Timers whose threads are strands of the schedule, with the rules of the library's own: a fixed rate by the local wall
// clock, every deadline tested again after each wait.

namespace zorvel {
namespace sim {

namespace {

using boost::posix_time::ptime;
using boost::posix_time::time_duration;

/// Of one timer. Strands take turns, so nothing more is needed.
struct Timer
{
    const boost::function0<void> fn;
    const time_duration interval;
    const bool repeat;
    bool failed = false;
};

class Task : public zvTimerTask
{
public:
    Task(Process& process, const boost::function0<void>& fn, const time_duration& interval, bool repeat)
        : m_process(process),
          m_timer(boost::make_shared<Timer>(Timer{fn, interval, repeat})),
          m_strand(
              process.startTimer(interval.total_microseconds(),
                                 [timer = m_timer, first = platform::localTime() + interval] { run(*timer, first); }))
    {
    }

    bool hasFailed() const override { return m_timer->failed; }

    void cancel() override
    {
        m_timer->failed = true;
        m_process.endTimer(m_strand);
    }

private:
    static void run(Timer& timer, ptime deadline)
    {
        try {
            if (World::current()->pace.isTimeless()) {
                platform::sleepFor(0);
                timer.fn();
                return;
            }
            do {
                sleepUntil(deadline);
                timer.fn();
                deadline += timer.interval;
            } while (timer.repeat);
        } catch (...) {
            timer.failed = true;
        }
    }

    /// To the microsecond: a wait of no milliseconds takes no time here.
    static void sleepUntil(const ptime& deadline)
    {
        Process& process = *Process::current();
        process.sleep(0);
        for (ptime now = platform::localTime(); now < deadline; now = platform::localTime())
            process.sleep((deadline - now).total_microseconds());
    }

    Process& m_process;
    const boost::shared_ptr<Timer> m_timer;
    Strand& m_strand;
};

}  // namespace

}  // namespace sim
}  // namespace zorvel

boost::shared_ptr<zvTimerTask> zvSetTimer(const boost::function0<void>& fn, boost::posix_time::time_duration interval,
                                          bool repeat)
{
    return boost::make_shared<zorvel::sim::Task>(*zorvel::sim::Process::current(), fn, interval, repeat);
}
