#include "bench/timers/asio_loop.h"
#include "bench/timers/measured_child_posix.h"
#include "bench/timers/rows.h"

#include <zorvel/timer.h>

#include <boost/date_time/posix_time/posix_time.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <functional>
#include <numeric>
#include <thread>

#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zorvel {
namespace bench {
namespace {

typedef std::chrono::steady_clock Clock;

const std::chrono::milliseconds period(10);
/// How late the thread begins is one chance for all calls of a run: many short runs tell more than a few long ones.
const std::size_t calls = 100;

/// Processes that do nothing but use processor time, one for each processor. They end with their owner.
class Hogs
{
public:
    Hogs()
    {
        for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i)
            m_children.push_back(start());
    }

    ~Hogs()
    {
        for (const pid_t child : m_children) {
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
        }
    }

    Hogs(const Hogs&) = delete;
    Hogs& operator=(const Hogs&) = delete;

private:
    static pid_t start()
    {
        const pid_t child = ::fork();
        if (child != 0)
            return child;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (volatile unsigned turns = 0;;)
            turns = turns + 1;
    }

    std::vector<pid_t> m_children;
};

/// When the calls came, from when the timer was set; written by the timer's thread alone.
class Calls
{
public:
    Calls() : m_begin(Clock::now()) { m_times.reserve(calls); }

    void note()
    {
        if (m_times.size() < calls)
            m_times.push_back(Clock::now() - m_begin);
    }

    /// Microseconds from when each call was due to when it came.
    std::vector<double> lateness() const
    {
        std::vector<double> late;
        for (std::size_t i = 0; i < m_times.size(); ++i) {
            const Clock::duration due = period * static_cast<long>(i + 1);
            late.push_back(std::chrono::duration<double, std::micro>(m_times[i] - due).count());
        }
        return late;
    }

private:
    const Clock::time_point m_begin;
    std::vector<Clock::duration> m_times;
};

void waitForCalls()
{
    std::this_thread::sleep_for(period * static_cast<long>(calls + 20));
}

std::vector<double> ours()
{
    Calls noted;
    const auto timer = zvSetTimer([&noted] { noted.note(); }, boost::posix_time::milliseconds(period.count()), true);
    waitForCalls();
    timer->cancel();
    return noted.lateness();
}

/// At a fixed rate, as ours: the next time is counted from the one before.
std::vector<double> asio()
{
    AsioLoop loop;
    Calls noted;
    boost::asio::steady_timer timer(loop.context(), period);
    std::function<void(const boost::system::error_code&)> tick = [&](const boost::system::error_code& code) {
        if (code)
            return;
        noted.note();
        timer.expires_at(timer.expiry() + period);
        timer.async_wait(tick);
    };
    timer.async_wait(tick);
    waitForCalls();
    loop.context().stop();
    return noted.lateness();
}

/// What is prescribed and nothing else: a thread of the timer's own, the first deadline one interval after it began to
/// run, and the local time read again after each wait. The waits are the system's most exact ones; nobody can end them.
void tickInThread(Calls& noted, const std::atomic<bool>& isOver)
{
    using boost::posix_time::microsec_clock;
    ::prctl(PR_SET_TIMERSLACK, 1);
    const boost::posix_time::milliseconds interval(period.count());
    for (boost::posix_time::ptime deadline = microsec_clock::local_time() + interval; !isOver; deadline += interval) {
        for (auto now = microsec_clock::local_time(); now < deadline; now = microsec_clock::local_time())
            std::this_thread::sleep_for(std::chrono::microseconds((deadline - now).total_microseconds()));
        noted.note();
    }
}

std::vector<double> bareThread()
{
    Calls noted;
    std::atomic<bool> isOver(false);
    std::thread thread(&tickInThread, std::ref(noted), std::cref(isOver));
    waitForCalls();
    isOver = true;
    thread.join();
    return noted.lateness();
}

/// The processor time that this process has used, in microseconds.
double processorTime()
{
    rusage used;
    ::getrusage(RUSAGE_SELF, &used);
    const timeval& user = used.ru_utime;
    const timeval& system = used.ru_stime;
    return static_cast<double>(user.tv_sec + system.tv_sec) * 1e6 + static_cast<double>(user.tv_usec + system.tv_usec);
}

double mean(const std::vector<double>& all, std::size_t first, std::size_t end)
{
    const auto begin = all.begin();
    return std::accumulate(begin + static_cast<long>(first), begin + static_cast<long>(end), 0.0) /
           static_cast<double>(end - first);
}

/// Median, p99, drift per second and processor time per second of one run.
std::vector<double> figures(std::vector<double> (*run)())
{
    const double seconds = std::chrono::duration<double>(period * static_cast<long>(calls + 20)).count();
    const double usedBefore = processorTime();
    std::vector<double> late = run();
    const double used = (processorTime() - usedBefore) / seconds;
    const std::size_t count = late.size();
    if (count < calls)
        return {};
    const double apart = std::chrono::duration<double>(period).count() * static_cast<double>(count) * 0.75;
    const double drift = std::abs(mean(late, count - count / 4, count) - mean(late, 0, count / 4)) / apart;
    std::sort(late.begin(), late.end());
    return {late[count / 2], late[count * 99 / 100], drift, used};
}

void measureOnce(RowFile& rows, const char* contestant, std::vector<double> (*run)())
{
    const std::vector<double> found = measuredInChild([run] { return figures(run); });
    rows.add("timer-late-median", contestant, "us", found.at(0));
    rows.add("timer-late-p99", contestant, "us", found.at(1));
    rows.add("timer-drift", contestant, "us/s", found.at(2));
    rows.add("timer-processor-time", contestant, "us/s", found.at(3));
}

}  // namespace

void measurePunctuality(RowFile& rows, int rounds)
{
    const Hogs hogs;
    for (int round = 0; round < rounds; ++round) {
        measureOnce(rows, "zorvel", &ours);
        measureOnce(rows, "asio", &asio);
        measureOnce(rows, "bare-thread", &bareThread);
    }
}

}  // namespace bench
}  // namespace zorvel
