#include "tests/simulation/timed_pace.h"

#include <algorithm>
#include <utility>

namespace zorvel {
namespace sim {

void TimedPace::wakeAfter(Strand& strand, Time after)
{
    m_events.push(Event{m_now + std::max<Time>(after, 0), m_number++, &strand, m_waits[&strand], nullptr});
}

void TimedPace::later(Time after, std::function<void()> event)
{
    m_events.push(Event{m_now + std::max<Time>(after, 0), m_number++, nullptr, 0, std::move(event)});
}

void TimedPace::exchange(Time there, Time back, std::function<void()> effect)
{
    later(there, std::move(effect));
    sleep(there + back);
}

void TimedPace::sleep(Time duration)
{
    Strand& self = *m_strands->current();
    ++m_waits[&self];
    wakeAfter(self, duration);
    m_strands->wait();
}

void TimedPace::waitToBeStirred()
{
    ++m_waits[m_strands->current()];
    m_strands->wait();
}

void TimedPace::begin(Strand& strand, Time after)
{
    wakeAfter(strand, after);
}

void TimedPace::stir(Strand& strand)
{
    if (strand.hasStarted() && !strand.isDone() && &strand != m_strands->current())
        wakeAfter(strand, 0);
}

/// What comes after the limit stays where it is.
Strand* TimedPace::next()
{
    while (!m_events.empty()) {
        if (m_events.top().time > m_limit || m_number > m_mostEvents) {
            m_overran = true;
            return nullptr;
        }
        const Event event = m_events.top();
        m_events.pop();
        // Time does not pass for what is over already.
        if (event.strand && (event.strand->isDone() || event.wait != m_waits[event.strand]))
            continue;
        m_now = event.time;
        if (event.strand) {
            ++m_waits[event.strand];
            return event.strand;
        }
        event.what();
    }
    return nullptr;
}

void TimedPace::setLimit(Time limit)
{
    m_limit = limit;
    m_mostEvents *= 2;
}

}  // namespace sim
}  // namespace zorvel
