#include "tests/support/fake_timer.h"

#include <zorvel/timer.h>

#include <boost/make_shared.hpp>
#include <boost/thread/exceptions.hpp>

#include <algorithm>
#include <mutex>
#include <vector>

namespace zorvel {
namespace test {
namespace fake_timer {

namespace {

struct Timer
{
    boost::function0<void> call;
    boost::posix_time::time_duration interval;
    bool repeat;
    bool failed;
};

typedef boost::shared_ptr<Timer> TimerPtr;

std::mutex guard;
std::vector<TimerPtr> timers;
bool refuse = false;

class Task : public zvTimerTask
{
public:
    explicit Task(const TimerPtr& timer) : m_timer(timer) {}

    bool hasFailed() const override
    {
        const std::lock_guard<std::mutex> lock(guard);
        return m_timer->failed;
    }

    void cancel() override
    {
        const std::lock_guard<std::mutex> lock(guard);
        m_timer->failed = true;
    }

private:
    TimerPtr m_timer;
};

std::vector<TimerPtr> all()
{
    const std::lock_guard<std::mutex> lock(guard);
    return timers;
}

TimerPtr add(const Timer& timer)
{
    const std::lock_guard<std::mutex> lock(guard);
    if (refuse) {
        refuse = false;
        throw boost::thread_resource_error();
    }
    timers.push_back(boost::make_shared<Timer>(timer));
    return timers.back();
}

}  // namespace

void reset()
{
    const std::lock_guard<std::mutex> lock(guard);
    timers.clear();
    refuse = false;
}

std::size_t set()
{
    return all().size();
}

std::size_t running()
{
    const std::vector<TimerPtr> present = all();
    return static_cast<std::size_t>(
        std::count_if(present.begin(), present.end(), [](const TimerPtr& timer) { return !timer->failed; }));
}

boost::posix_time::time_duration lastInterval()
{
    return all().back()->interval;
}

bool lastRepeats()
{
    return all().back()->repeat;
}

void fire()
{
    for (const TimerPtr& timer : all()) {
        if (timer->failed)
            continue;
        try {
            timer->call();
        } catch (...) {
            timer->failed = true;
        }
    }
}

void failNext()
{
    const std::lock_guard<std::mutex> lock(guard);
    refuse = true;
}

}  // namespace fake_timer
}  // namespace test
}  // namespace zorvel

boost::shared_ptr<zvTimerTask> zvSetTimer(const boost::function0<void>& fn, boost::posix_time::time_duration interval,
                                          bool repeat)
{
    using namespace zorvel::test::fake_timer;
    return boost::make_shared<Task>(add(Timer{fn, interval, repeat, false}));
}
