#pragma once

#include "tests/simulation/pace.h"

#include <map>
#include <queue>
#include <vector>

namespace zorvel {
namespace sim {

/// Everything happens at its time; of what happens at the same instant, first
/// what was settled first.
class TimedPace : public Pace
{
public:
    explicit TimedPace(Time limit)
        : m_limit(limit), m_mostEvents(5000000), m_now(0), m_number(0), m_strands(nullptr), m_overran(false)
    {
    }

    void use(Strands& strands) { m_strands = &strands; }

    Time now() const override { return m_now; }
    void exchange(Time there, Time back, std::function<void()> effect) override;
    void sleep(Time duration) override;
    void waitToBeStirred() override;
    void begin(Strand& strand, Time after) override;
    void stir(Strand& strand) override;
    void later(Time after, std::function<void()> event) override;
    Strand* next() override;

    /// Whether the schedule was broken off, by time or number of events.
    bool overran() const { return m_overran; }

    /// Lets a schedule that was broken off come to its end.
    void setLimit(Time limit);

private:
    struct Event
    {
        Time time;
        std::uint64_t number;
        Strand* strand;      ///< who goes on; null: something happens
        std::uint64_t wait;  ///< the wait of the strand that this ends
        std::function<void()> what;

        bool operator<(const Event& other) const
        {
            return time != other.time ? time > other.time : number > other.number;
        }
    };

    void wakeAfter(Strand& strand, Time after);

    Time m_limit;
    std::uint64_t m_mostEvents;  ///< also at one instant it must come to an end
    Time m_now;
    std::uint64_t m_number;
    Strands* m_strands;
    bool m_overran;
    std::priority_queue<Event> m_events;
    std::map<Strand*, std::uint64_t> m_waits;
};

}  // namespace sim
}  // namespace zorvel
