#include "tests/support/seam_wrapper.h"

#include "platform/clock.h"
#include "platform/language.h"
#include "platform/loader.h"
#include "platform/modules.h"
#include "platform/path_rules.h"
#include "platform/semaphore.h"
#include "platform/system_error.h"
#include "platform/wake_up.h"
#include "tests/support/fake_clock.h"

#include <zorvel/timer.h>

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>

#include <algorithm>
#include <mutex>
#include <vector>

// All of the seam but files and directories, and the timers.

using namespace zorvel::platform;
namespace seam = zorvel::test::seam_faults;
namespace fake_clock = zorvel::test::fake_clock;
using boost::posix_time::time_duration;

namespace {

typedef boost::function0<void> Callback;
typedef boost::shared_ptr<zvTimerTask> TaskPtr;

struct Timer
{
    Callback call;
    bool isRunning;
};

typedef boost::shared_ptr<Timer> TimerPtr;

std::mutex guard;
std::vector<TimerPtr> timers;

/// A real timer whose interval never passes. Cancelling it ends its thread.
class Task : public zvTimerTask
{
public:
    Task(const TaskPtr& real, const TimerPtr& timer) : m_real(real), m_timer(timer) {}

    bool hasFailed() const override { return m_real->hasFailed(); }

    void cancel() override
    {
        m_real->cancel();
        const std::lock_guard<std::mutex> lock(guard);
        m_timer->isRunning = false;
    }

private:
    const TaskPtr m_real;
    const TimerPtr m_timer;
};

/// Timers that have ended are forgotten at the next one.
void remember(const TimerPtr& timer)
{
    const std::lock_guard<std::mutex> lock(guard);
    timers.erase(std::remove_if(timers.begin(), timers.end(), [](const TimerPtr& each) { return !each->isRunning; }),
                 timers.end());
    timers.push_back(timer);
}

std::vector<TimerPtr> running()
{
    const std::lock_guard<std::mutex> lock(guard);
    std::vector<TimerPtr> found;
    for (const TimerPtr& timer : timers)
        if (timer->isRunning)
            found.push_back(timer);
    return found;
}

/// The thread that makes the calls never waits; those of timers do until they
/// are interrupted.
const boost::thread::id callingThread = boost::this_thread::get_id();

}  // namespace

namespace zorvel {
namespace test {
namespace seam_faults {

std::size_t runningTimers()
{
    return running().size();
}

void fireTimers()
{
    for (const TimerPtr& timer : running()) {
        try {
            timer->call();
        } catch (...) {
            const std::lock_guard<std::mutex> lock(guard);
            timer->isRunning = false;
        }
    }
}

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel

ZORVEL_SEAM(setTimer, TaskPtr, const Callback& fn, time_duration interval, bool repeat)
{
    if (const seam::Answer* const answer = seam::next(seam::setTimer))
        seam::throwIfAsked(*answer);
    if (interval.is_special())
        return real_setTimer(fn, interval, repeat);
    const TimerPtr timer = boost::make_shared<Timer>(Timer{fn, true});
    remember(timer);
    return boost::make_shared<Task>(real_setTimer([] {}, boost::posix_time::pos_infin, repeat), timer);
}

ZORVEL_SEAM(sleepFor, void, long milliseconds)
{
    if (boost::this_thread::get_id() != callingThread) {
        boost::this_thread::sleep(boost::posix_time::hours(1));
        return;
    }
    if (const seam::Answer* const answer = seam::next(seam::sleepFor))
        seam::throwIfAsked(*answer);
    fake_clock::set(fake_clock::now() + boost::posix_time::milliseconds(milliseconds));
}

/// Only timers sleep like this. It cannot fail, and so nothing makes it.
ZORVEL_SEAM(sleepUnlessCalled, bool, WakeUp& wakeUp, long)
{
    boost::this_thread::sleep(boost::posix_time::hours(1));
    return !wakeUp.isCalled();
}

ZORVEL_SEAM(sleepExactlyUnlessCalled, bool, WakeUp& wakeUp, long)
{
    boost::this_thread::sleep(boost::posix_time::hours(1));
    return !wakeUp.isCalled();
}

ZORVEL_SEAM(userLanguage, std::string, void)
{
    return seam::calledOrEmpty<std::string>(seam::userLanguage, [] { return real_userLanguage(); });
}

ZORVEL_SEAM(fromCodePage932, bool, const char* text, std::string& result)
{
    return seam::called<bool>(seam::fromCodePage932, [&] { return real_fromCodePage932(text, result); });
}

ZORVEL_SEAM(loadLibrary, void*, const char* path)
{
    return seam::calledOrEmpty<void*>(seam::loadLibrary, [&] { return real_loadLibrary(path); });
}

ZORVEL_SEAM(findSymbol, void*, void* library, const char* symbol)
{
    return seam::calledOrEmpty<void*>(seam::findSymbol, [&] { return real_findSymbol(library, symbol); });
}

ZORVEL_SEAM(unloadLibrary, bool, void* library)
{
    return seam::called<bool>(seam::unloadLibrary, [&] { return real_unloadLibrary(library); });
}

ZORVEL_SEAM(listModules, bool, void* process, void** modules, std::uint32_t size, std::uint32_t& needed)
{
    return seam::called<bool>(seam::listModules, [&] { return real_listModules(process, modules, size, needed); });
}

ZORVEL_SEAM(moduleFileName, std::uint32_t, void* process, void* module, char* buffer, std::uint32_t size)
{
    return seam::called<std::uint32_t>(seam::moduleFileName,
                                       [&] { return real_moduleFileName(process, module, buffer, size); });
}

ZORVEL_SEAM(ownModuleFileName, std::uint32_t, void* module, char* buffer, std::uint32_t size)
{
    return seam::called<std::uint32_t>(seam::ownModuleFileName,
                                       [&] { return real_ownModuleFileName(module, buffer, size); });
}

ZORVEL_SEAM(canonicalize, bool, const char* in, char* out)
{
    if (seam::next(seam::canonicalize)) {
        out[0] = '\0';
        return false;
    }
    return real_canonicalize(in, out);
}

ZORVEL_SEAM(fullPath, bool, const char* in, char* out, std::size_t size)
{
    return seam::called<bool>(seam::fullPath, [&] { return real_fullPath(in, out, size); });
}

ZORVEL_SEAM(createSemaphore, void*, const std::string& name, long initialCount, long maximumCount)
{
    return seam::calledOrEmpty<void*>(seam::createSemaphore,
                                      [&] { return real_createSemaphore(name, initialCount, maximumCount); });
}

ZORVEL_SEAM(waitForSemaphore, unsigned long, void* handle, unsigned long milliseconds)
{
    return seam::called<unsigned long>(seam::waitForSemaphore,
                                       [&] { return real_waitForSemaphore(handle, milliseconds); });
}

ZORVEL_SEAM(releaseSemaphore, bool, void* handle)
{
    return seam::called<bool>(seam::releaseSemaphore, [&] { return real_releaseSemaphore(handle); });
}

ZORVEL_SEAM(closeSemaphore, int, void* handle)
{
    return seam::called<int>(seam::closeSemaphore, [&] { return real_closeSemaphore(handle); });
}

ZORVEL_SEAM(lastError, unsigned long, void)
{
    const seam::Answer* const answer = seam::next(seam::lastError);
    return answer ? static_cast<unsigned long>(answer->result) : real_lastError();
}

ZORVEL_SEAM(systemErrorText, std::string, unsigned long code)
{
    return seam::calledOrEmpty<std::string>(seam::systemErrorText, [&] { return real_systemErrorText(code); });
}
