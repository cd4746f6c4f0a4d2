#include "examples/deploy_demo/play.h"

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace zorvel {
namespace demo {

namespace {

/// Longer than a lock takes to go stale, with room for a slow machine.
const std::chrono::seconds silenceLimit(90);
const std::chrono::milliseconds tick(100);

/// How long a stalled holder is let alone, so that the picture shows it.
const Microseconds lastMoments = 300 * 1000;

/// A worker's clock that differs by more is corrected.
const Microseconds clockTolerance = 1000;

std::string seconds(Microseconds duration)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << static_cast<double>(duration) / 1e6 << " s";
    return text.str();
}

}  // namespace

Play::Play(const Cast& cast, const std::filesystem::path& directory, Progress& progress)
    : m_cast(cast),
      m_directory(directory),
      m_progress(progress),
      m_history(cast.members),
      m_offsets(cast.members.size(), 0)
{
}

bool Play::run()
{
    const bool completed = start() && compareClocks() && perform();
    m_progress.clear();
    if (completed)
        finish();
    return completed;
}

bool Play::start()
{
    m_progress.say("starting " + std::to_string(m_cast.members.size()) + " processes");
    for (const std::vector<std::string>& command : m_cast.commands)
        m_processes.start(command);
    m_running = m_cast.commands.size();
    Event event;
    for (std::size_t i = 0; i < m_running; ++i)
        if (!answer(event))
            return false;
    return true;
}

/// The next event, before the play has begun: nobody may end yet, and nobody
/// speaks without being asked. False: interrupted.
bool Play::answer(Event& event)
{
    const Report report = m_processes.next(silenceLimit);
    if (report.kind == Report::interrupted)
        return false;
    if (report.kind != Report::line)
        throw std::runtime_error(report.kind == Report::ended ? m_cast.members[report.process].name + " ended at once"
                                                              : "the workers do not answer");
    if (!readEvent(report.process, report.text, event))
        throw std::runtime_error("a worker said: " + report.text);
    return true;
}

/// A Windows program asks its own system for the time; that this is the same
/// clock is found out, not assumed. A worker's time must lie between question
/// and answer.
bool Play::compareClocks()
{
    const int questions = 5;
    Microseconds slowest = 0;
    for (std::size_t i = 0; i < m_running; ++i) {
        Microseconds best = 0;
        for (int question = 0; question < questions; ++question) {
            Event event;
            const Microseconds asked = now();
            m_processes.send(i, "clock");
            if (!answer(event))
                return false;
            const Microseconds took = now() - asked;
            if (question == 0 || took < best) {
                best = took;
                m_offsets[i] = event.time - asked - took / 2;
            }
        }
        slowest = std::max(slowest, best);
        if (std::abs(m_offsets[i]) <= clockTolerance + best / 2)
            m_offsets[i] = 0;
        else
            m_progress.say("the clock of " + m_cast.members[i].name + " differs by " + std::to_string(m_offsets[i]) +
                           " microseconds, which is taken off its times");
    }
    m_progress.say("clocks compared: question and answer took at most " + std::to_string(slowest) + " microseconds");
    return true;
}

bool Play::perform()
{
    for (std::size_t i = 0; i < m_cast.members.size(); ++i)
        m_processes.send(i, "go");
    std::chrono::steady_clock::time_point heard = std::chrono::steady_clock::now();
    while (m_running > 0) {
        const Report report = m_processes.next(tick);
        if (report.kind == Report::interrupted)
            return false;
        const auto here = std::chrono::steady_clock::now();
        if (report.kind != Report::nothing) {
            heard = here;
            receive(report);
        } else if (here - heard > silenceLimit) {
            throw std::runtime_error("no worker has made progress for too long");
        }
        if (m_stalled && now() >= m_killAt)
            killStalled();
        if (m_history.begin())
            m_progress.show(situation());
    }
    return true;
}

void Play::receive(const Report& report)
{
    if (report.kind == Report::ended) {
        --m_running;
        return;
    }
    Event event;
    if (!readEvent(report.process, report.text, event)) {
        m_problems.push_back(m_cast.members[report.process].name + " said: " + report.text);
        return;
    }
    event.time -= m_offsets[report.process];
    m_history.add(event);
    if (event.word == Word::stall) {
        m_stalled = true;
        m_victim = report.process;
        m_killAt = now() + lastMoments;
    }
}

void Play::killStalled()
{
    m_stalled = false;
    m_processes.kill(m_victim);
    m_history.add({m_victim, now(), Word::killed, 0, ""});
    const std::string name = m_cast.members[m_victim].name;
    m_progress.say("killed " + name + " (kill -9) inside, half way through release " +
                   std::to_string(m_history.kill().release) + "; the others may take its lock over when it is stale");
}

void Play::finish()
{
    m_history.finish();
    const int byKill = 128 + 9;
    for (std::size_t i = 0; i < m_cast.members.size(); ++i) {
        const bool killed = m_history.kill().happened && m_history.kill().process == i;
        const int status = m_processes.finish(i);
        if (status != (killed ? byKill : 0))
            m_problems.push_back(m_cast.members[i].name + " ended with status " + std::to_string(status));
    }
}

std::string Play::situation() const
{
    std::ostringstream text;
    text << std::setw(6) << seconds(now() - m_history.begin()) << "  ";
    if (m_history.kill().inside && !m_history.takeOver().happened)
        text << staleness();
    else
        text << "release " << m_history.lastRelease() << " of " << m_cast.releases << ", "
             << (m_history.holder().empty() ? "nobody" : m_history.holder()) << " inside";
    text << ", " << m_history.waiting() << " waiting";
    return text.str();
}

/// The age of the dead process's lock file, as the directory shows it.
std::string Play::staleness() const
{
    std::error_code gone;
    const auto refreshed = std::filesystem::last_write_time(m_directory / ".deploy_lock.0", gone);
    const auto age = std::filesystem::file_time_type::clock::now() - refreshed;
    const std::string name = m_cast.members[m_history.kill().process].name;
    if (gone)
        return name + " is dead, its lock is gone";
    return name + " is dead, its lock " +
           std::to_string(std::chrono::duration_cast<std::chrono::seconds>(age).count()) + " s old (stale after 30 s)";
}

}  // namespace demo
}  // namespace zorvel
