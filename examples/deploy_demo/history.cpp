#include "examples/deploy_demo/history.h"

#include <algorithm>

namespace zorvel {
namespace demo {

History::History(const std::vector<Member>& members) : m_members(members), m_lanes(members.size())
{
}

void History::add(const Event& event)
{
    Lane& lane = m_lanes.at(event.process);
    m_end = std::max(m_end, event.time);
    switch (event.word) {
    case Word::queue:
        lane.queuedSince = event.time;
        m_begin = m_begin ? std::min(m_begin, event.time) : event.time;
        break;
    case Word::hold: startHolding(event); break;
    case Word::met: meet(event); break;
    case Word::half: m_takeOver.foundFiles = event.number; break;
    case Word::start: lane.release = event.number; break;
    case Word::deployed:
        ++m_deployed;
        m_lastRelease = std::max(m_lastRelease, event.number);
        break;
    case Word::spoiled: ++m_strangersMet; break;
    case Word::leave: stopHolding(event); break;
    case Word::killed: die(event); break;
    case Word::ready:
    case Word::clock:
    case Word::stall:
    case Word::free:
    case Word::done: break;
    }
}

void History::startHolding(const Event& event)
{
    Lane& lane = m_lanes[event.process];
    m_intervals.push_back({event.process, Activity::queued, lane.queuedSince, event.time, 0});
    lane.queuedSince = 0;
    lane.heldSince = event.time;
    lane.release = 0;
    if (m_kill.inside && !m_takeOver.happened && event.time > m_kill.time)
        takeOver(event);
}

void History::stopHolding(const Event& event)
{
    Lane& lane = m_lanes[event.process];
    m_intervals.push_back({event.process, Activity::holding, lane.heldSince, event.time, lane.release});
    lane.heldSince = 0;
}

/// The dead holder's mark is no sign that two were inside together.
void History::meet(const Event& event)
{
    if (isDeadHolder(event.name) && event.time > m_kill.time && !m_takeOver.foundMark)
        m_takeOver.foundMark = true;
    else
        ++m_strangersMet;
}

bool History::isDeadHolder(const std::string& name) const
{
    return m_kill.inside && m_members[m_kill.process].name == name;
}

void History::die(const Event& event)
{
    Lane& lane = m_lanes[event.process];
    m_kill.happened = true;
    m_kill.inside = lane.heldSince != 0;
    m_kill.process = event.process;
    m_kill.time = event.time;
    m_kill.release = lane.release;
    if (m_kill.inside)
        stopHolding(event);
    else if (lane.queuedSince)
        m_intervals.push_back({event.process, Activity::queued, lane.queuedSince, event.time, 0});
    lane = Lane();
}

void History::takeOver(const Event& event)
{
    m_takeOver.happened = true;
    m_takeOver.process = event.process;
    m_takeOver.time = event.time;
    m_intervals.push_back({m_kill.process, Activity::leftBehind, m_kill.time, event.time, m_kill.release});
}

int History::waiting() const
{
    return static_cast<int>(
        std::count_if(m_lanes.begin(), m_lanes.end(), [](const Lane& lane) { return lane.queuedSince != 0; }));
}

std::string History::holder() const
{
    for (std::size_t i = 0; i < m_lanes.size(); ++i)
        if (m_lanes[i].heldSince)
            return m_members[i].name;
    return std::string();
}

void History::finish()
{
    for (std::size_t i = 0; i < m_lanes.size(); ++i) {
        if (m_lanes[i].heldSince)
            m_intervals.push_back({i, Activity::holding, m_lanes[i].heldSince, m_end, m_lanes[i].release});
        if (m_lanes[i].queuedSince)
            m_intervals.push_back({i, Activity::queued, m_lanes[i].queuedSince, m_end, 0});
        m_lanes[i] = Lane();
    }
    std::sort(m_intervals.begin(), m_intervals.end(), [](const Interval& left, const Interval& right) {
        return left.from != right.from ? left.from < right.from : left.process < right.process;
    });
}

}  // namespace demo
}  // namespace zorvel
