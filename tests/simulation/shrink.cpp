#include "tests/simulation/shrink.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace zorvel {
namespace sim {

namespace {

typedef std::vector<Choices::Key> Keys;

class Shrinker
{
public:
    Shrinker(const Plan& plan, Wrong wrong) : m_plan(plan), m_wrong(wrong), m_runs(0)
    {
        Trace silent(false);
        m_keys = runSchedule(plan, silent).choices;
    }

    Minimal run()
    {
        while (m_runs < mostRuns && (dropChoices() | dropParts() | simplifyTimes())) {
        }
        return Minimal{m_plan, std::set<Choices::Key>(m_keys.begin(), m_keys.end())};
    }

private:
    static const int mostRuns = 6000;

    bool goesWrong(const Plan& plan, const Keys& keys)
    {
        ++m_runs;
        Trace silent(false);
        const std::set<Choices::Key> only(keys.begin(), keys.end());
        const Outcome outcome = runSchedule(plan, silent, &only);
        return std::any_of(outcome.violations.begin(), outcome.violations.end(),
                           [this](const Violation& violation) { return violation.wrong == m_wrong; });
    }

    bool accept(const Plan& plan)
    {
        if (m_runs >= mostRuns || !goesWrong(plan, m_keys))
            return false;
        m_plan = plan;
        return true;
    }

    /// Halves, quarters, ... at last one by one.
    bool dropChoices()
    {
        const std::size_t before = m_keys.size();
        for (std::size_t part = m_keys.size(); part >= 1 && m_runs < mostRuns; part /= 2) {
            for (std::size_t begin = 0; begin < m_keys.size() && m_runs < mostRuns;) {
                Keys fewer = m_keys;
                const std::size_t end = std::min(begin + part, fewer.size());
                fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(begin),
                            fewer.begin() + static_cast<std::ptrdiff_t>(end));
                if (goesWrong(m_plan, fewer))
                    m_keys = fewer;
                else
                    begin += part;
            }
        }
        return m_keys.size() < before;
    }

    template <class T>
    bool dropFrom(const std::function<std::vector<T>&(Plan&)>& list, std::size_t least)
    {
        bool dropped = false;
        for (std::size_t i = list(m_plan).size(); i-- > 0;) {
            Plan plan = m_plan;
            std::vector<T>& items = list(plan);
            if (items.size() <= least)
                break;
            items.erase(items.begin() + static_cast<std::ptrdiff_t>(i));
            dropped = accept(plan) || dropped;
        }
        return dropped;
    }

    /// A process keeps its number, if only as one that does nothing.
    bool dropParts()
    {
        bool dropped = dropFrom<Mishap>([](Plan& plan) -> std::vector<Mishap>& { return plan.mishaps; }, 0);
        for (std::size_t i = 0; i < m_plan.processes.size(); ++i)
            dropped = dropFrom<Turn>([i](Plan& plan) -> std::vector<Turn>& { return plan.processes[i].turns; },
                                     i == 0 ? 1 : 0) ||
                      dropped;
        return dropped;
    }

    bool setTo(const std::function<Time&(Plan&)>& place, Time value)
    {
        Plan plan = m_plan;
        if (place(plan) == value)
            return false;
        place(plan) = value;
        return accept(plan);
    }

    /// To nothing, or else to a rounder number.
    bool simplify(const std::function<Time&(Plan&)>& place)
    {
        if (setTo(place, 0))
            return true;
        for (const Time unit : {10 * second, second, 10 * millisecond, millisecond})
            if (setTo(place, place(m_plan) / unit * unit))
                return true;
        return false;
    }

    bool simplifyTimes()
    {
        bool changed = setTo([](Plan& plan) -> Time& { return plan.oneWay; }, millisecond);
        changed = simplify([](Plan& plan) -> Time& { return plan.cached; }) || changed;
        changed = simplify([](Plan& plan) -> Time& { return plan.serverOffset; }) || changed;
        for (std::size_t i = 0; i < m_plan.machines.size(); ++i)
            changed = simplify([i](Plan& plan) -> Time& { return plan.machines[i].offset; }) || changed;
        for (std::size_t i = 0; i < m_plan.mishaps.size(); ++i) {
            changed = simplify([i](Plan& plan) -> Time& { return plan.mishaps[i].delay; }) || changed;
            changed = simplify([i](Plan& plan) -> Time& { return plan.mishaps[i].duration; }) || changed;
        }
        for (std::size_t i = 0; i < m_plan.processes.size(); ++i)
            for (std::size_t j = 0; j < m_plan.processes[i].turns.size(); ++j)
                changed = simplifyTurn(i, j) || changed;
        return changed;
    }

    bool simplifyTurn(std::size_t i, std::size_t j)
    {
        bool changed = simplify([=](Plan& plan) -> Time& { return plan.processes[i].turns[j].before; });
        return simplify([=](Plan& plan) -> Time& { return plan.processes[i].turns[j].hold; }) || changed;
    }

    Plan m_plan;
    const Wrong m_wrong;
    int m_runs;
    Keys m_keys;
};

}  // namespace

Minimal shrink(const Plan& plan, Wrong wrong)
{
    return Shrinker(plan, wrong).run();
}

}  // namespace sim
}  // namespace zorvel
