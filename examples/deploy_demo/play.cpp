#include "examples/deploy_demo/play.h"

#include "examples/deploy_demo/release_store.h"
#include "examples/deploy_demo/text.h"

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

/// How long a process that stands still is let alone, so that the picture shows it.
const Microseconds lastMoments = 300 * 1000;

/// A worker's clock that differs by more is corrected.
const Microseconds clockTolerance = 1000;

std::string roleOf(const Member& member)
{
    return member.role == Role::writer ? "writer" : "reader";
}

/// Seconds since the last refresh of the oldest lock file of a role; -1 when
/// there is none.
long long ageOfLock(const std::filesystem::path& directory, Role role)
{
    const std::string beginning = role == Role::writer ? ".deploy_write_lock" : ".deploy_read_lock.";
    long long oldest = -1;
    std::error_code gone;
    for (const auto& entry : std::filesystem::directory_iterator(directory, gone)) {
        const auto refreshed = entry.last_write_time(gone);
        if (gone || !beginsWith(entry.path().filename().string(), beginning))
            continue;
        const auto age = std::filesystem::file_time_type::clock::now() - refreshed;
        oldest = std::max<long long>(oldest, std::chrono::duration_cast<std::chrono::seconds>(age).count());
    }
    return oldest;
}

}  // namespace

Play::Play(const Cast& cast, const std::filesystem::path& directory, Progress& progress)
    : m_cast(cast),
      m_directory(directory),
      m_progress(progress),
      m_history(cast.members),
      m_offsets(cast.members.size(), 0),
      m_writers(
          static_cast<std::size_t>(std::count_if(cast.members.begin(), cast.members.end(),
                                                 [](const Member& member) { return member.role == Role::writer; })))
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
    m_progress.say("starting " + std::to_string(m_cast.members.size()) + " processes: " + introduction(m_cast));
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

/// Readers go on for ever, so it is the writers' silence that counts.
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
        if (report.kind == Report::ended ||
            (report.kind == Report::line && m_cast.members[report.process].role == Role::writer))
            heard = here;
        if (report.kind != Report::nothing)
            receive(report);
        if (here - heard > silenceLimit)
            throw std::runtime_error("no writer has made progress for too long");
        killStalled();
        if (m_history.begin())
            m_progress.show(situation());
    }
    return true;
}

void Play::receive(const Report& report)
{
    if (report.kind == Report::ended) {
        end(report.process);
        return;
    }
    Event event;
    if (!readEvent(report.process, report.text, event)) {
        m_problems.push_back(m_cast.members[report.process].name + " said: " + report.text);
        return;
    }
    event.time -= m_offsets[report.process];
    m_history.add(event);
    if (event.word == Word::stall)
        m_stalled[report.process] = now() + lastMoments;
    if (event.word == Word::cleared)
        m_progress.say(m_cast.members[report.process].name + " has removed a stale lock file, " + event.name);
}

void Play::end(std::size_t process)
{
    --m_running;
    if (m_cast.members[process].role == Role::writer && --m_writers == 0)
        ReleaseStore(m_directory).close();
}

void Play::killStalled()
{
    for (auto next = m_stalled.begin(); next != m_stalled.end();) {
        const auto stalled = next++;
        if (now() < stalled->second)
            continue;
        kill(stalled->first);
        m_stalled.erase(stalled);
    }
}

void Play::kill(std::size_t process)
{
    m_processes.kill(process);
    m_history.add({process, now(), Word::killed, 0, ""});
    const Member& member = m_cast.members[process];
    const std::string release = std::to_string(m_history.deaths().back().release);
    const std::string deed = member.role == Role::writer
                                 ? "half way through release " + release + ": everybody waits"
                                 : "reading release " + release + ": writers, but no readers, wait";
    m_progress.say("killed " + member.name + " (kill -9) " + deed + " until its lock file is stale");
}

void Play::finish()
{
    m_history.finish();
    const int byKill = 128 + 9;
    std::vector<int> expected(m_cast.members.size(), 0);
    for (const Death& death : m_history.deaths())
        expected[death.process] = byKill;
    for (std::size_t i = 0; i < m_cast.members.size(); ++i) {
        const int status = m_processes.finish(i);
        if (status != expected[i])
            m_problems.push_back(m_cast.members[i].name + " ended with status " + std::to_string(status));
    }
}

/// The dead process whose lock file still lies there; null when there is none.
const Death* Play::unburied() const
{
    for (const Death& death : m_history.deaths())
        if (death.inside && !death.cleared)
            return &death;
    return nullptr;
}

std::string Play::situation() const
{
    std::ostringstream text;
    text << std::setw(6) << seconds(now() - m_history.begin(), 1) << "  release " << m_history.lastRelease() << " of "
         << m_cast.lastRelease << ", ";
    const int readers = m_history.count(Activity::reading);
    if (const Death* const death = unburied())
        text << staleness(*death) << ", ";
    if (!m_history.writer().empty())
        text << m_history.writer() << " writes";
    else if (readers > 0)
        text << readers << (readers == 1 ? " reads" : " read");
    else
        text << "nobody inside";
    text << ", " << m_history.count(Activity::waiting) << " waiting";
    return text.str();
}

/// The age of a dead process's lock file, as the directory shows it.
std::string Play::staleness(const Death& death) const
{
    const Member& member = m_cast.members[death.process];
    const long long age = ageOfLock(m_directory, member.role);
    const std::string dead = roleOf(member) + ' ' + member.name + " is dead, its lock ";
    return age < 0 ? dead + "is gone" : dead + std::to_string(age) + " s old (stale after 30 s)";
}

}  // namespace demo
}  // namespace zorvel
