#include "examples/deploy_demo/history.h"

#include <algorithm>

namespace zorvel {
namespace demo {

History::History(const std::vector<Member>& members)
    : m_members(members), m_lanes(members.size()), m_readings(members.size())
{
}

void History::add(const Event& event)
{
    m_end = std::max(m_end, event.time);
    switch (event.word) {
    case Word::queue:
        m_begin = m_begin ? std::min(m_begin, event.time) : event.time;
        start(event, Activity::waiting);
        break;
    case Word::hold:
        start(event, m_members.at(event.process).role == Role::writer ? Activity::writing : Activity::reading);
        break;
    case Word::lower: lower(event); break;
    case Word::leave: stop(event.process, event.time); break;
    case Word::start:
    case Word::stall: m_lanes.at(event.process).release = event.number; break;
    case Word::deployed:
        ++m_deployed;
        m_lastRelease = std::max(m_lastRelease, event.number);
        break;
    case Word::spoiled: ++m_spoiled; break;
    case Word::served:
    case Word::unfinished:
    case Word::torn: judge(event); break;
    case Word::met: meet(event); break;
    case Word::half: findHalf(event); break;
    case Word::cleared: clear(event); break;
    case Word::killed: die(event); break;
    case Word::ready:
    case Word::clock:
    case Word::free:
    case Word::done: break;
    }
}

/// Whatever it did before ends.
void History::start(const Event& event, Activity activity)
{
    stop(event.process, event.time);
    Lane& lane = m_lanes[event.process];
    lane.activity = activity;
    lane.since = event.time;
}

void History::stop(std::size_t process, Microseconds time)
{
    Lane& lane = m_lanes.at(process);
    if (lane.since)
        m_intervals.push_back({process, lane.activity, lane.since, time, lane.release, lane.found});
    lane = Lane();
}

void History::lower(const Event& event)
{
    start(event, Activity::reading);
    m_downgrades.push_back({event.process, event.time});
}

void History::judge(const Event& event)
{
    Readings& readings = m_readings.at(event.process);
    Lane& lane = m_lanes.at(event.process);
    lane.release = event.number;
    lane.found = event.word == Word::served ? Finding::whole
                 : event.word == Word::torn ? Finding::torn
                                            : Finding::unfinished;
    if (event.word == Word::served)
        ++readings.verified;
    else if (event.word == Word::torn)
        ++readings.torn;
    else if (deathOf(event.name, event.time))
        ++readings.unfinished;
    else
        ++m_spoiled;
}

/// A dead process's mark is no sign that two were inside together.
void History::meet(const Event& event)
{
    if (!deathOf(event.name, event.time))
        ++m_strangersMet;
}

void History::findHalf(const Event& event)
{
    Death* const death = deathOf(event.name, event.time);
    if (!death) {
        ++m_spoiled;
        return;
    }
    death->replaced = true;
    death->replacedBy = event.process;
    death->foundFiles = event.number;
}

/// The name of a lock file says whether a reader or a writer left it behind.
void History::clear(const Event& event)
{
    const Role role = event.name.find("write") != std::string::npos ? Role::writer : Role::reader;
    for (Death& death : m_deaths) {
        if (!death.inside || death.cleared || death.time > event.time || m_members[death.process].role != role)
            continue;
        death.cleared = true;
        death.heir = event.process;
        death.clearedAt = event.time;
        m_intervals.push_back({death.process, Activity::leftBehind, death.time, event.time, death.release});
        return;
    }
    ++m_robbed;
}

void History::die(const Event& event)
{
    const Lane lane = m_lanes.at(event.process);
    Death death;
    death.process = event.process;
    death.time = event.time;
    death.inside = lane.since != 0 && lane.activity != Activity::waiting;
    death.release = lane.release;
    m_deaths.push_back(death);
    stop(event.process, event.time);
}

/// Null for somebody who was alive at that time.
Death* History::deathOf(const std::string& name, Microseconds before)
{
    for (Death& death : m_deaths)
        if (m_members[death.process].name == name && death.inside && death.time < before)
            return &death;
    return nullptr;
}

int History::count(Activity activity) const
{
    return static_cast<int>(std::count_if(m_lanes.begin(), m_lanes.end(), [&](const Lane& lane) {
        return lane.since != 0 && lane.activity == activity;
    }));
}

std::string History::writer() const
{
    for (std::size_t i = 0; i < m_lanes.size(); ++i)
        if (m_lanes[i].since && m_lanes[i].activity == Activity::writing)
            return m_members[i].name;
    return std::string();
}

void History::finish()
{
    for (std::size_t i = 0; i < m_lanes.size(); ++i)
        stop(i, m_end);
    std::sort(m_intervals.begin(), m_intervals.end(), [](const Interval& left, const Interval& right) {
        return left.from != right.from ? left.from < right.from : left.process < right.process;
    });
}

}  // namespace demo
}  // namespace zorvel
