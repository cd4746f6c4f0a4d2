#include "examples/deploy_demo/figures.h"

#include <algorithm>

namespace zorvel {
namespace demo {

namespace {

bool isHold(const Interval& interval)
{
    return interval.activity == Activity::reading || interval.activity == Activity::writing;
}

bool meet(const Interval& left, const Interval& right)
{
    return left.from < right.to && right.from < left.to;
}

/// A granted request: the wait and the hold that ended it. A downgrade makes a
/// hold without a request.
struct Grant
{
    const Interval* wait;
    const Interval* hold;
};

std::vector<Grant> grantsOf(const History& history)
{
    std::vector<Grant> grants;
    std::vector<const Interval*> waited(history.members().size(), nullptr);
    for (const Interval& interval : history.intervals()) {
        const Interval*& wait = waited[interval.process];
        if (interval.activity == Activity::waiting)
            wait = &interval;
        if (!isHold(interval) || !wait)
            continue;
        grants.push_back({wait, &interval});
        wait = nullptr;
    }
    return grants;
}

/// Whether a dead process's lock file kept this one waiting: a reader's keeps
/// writers only.
bool spansStaleness(const History& history, const Interval& wait)
{
    const bool writes = history.members()[wait.process].role == Role::writer;
    return std::any_of(history.deaths().begin(), history.deaths().end(), [&](const Death& death) {
        const bool inTheWay = writes || history.members()[death.process].role == Role::writer;
        return death.inside && inTheWay && wait.to > death.time && (!death.cleared || wait.from < death.clearedAt);
    });
}

void count(Waits& waits, Microseconds wait)
{
    waits.mean = (waits.mean * waits.count + wait) / (waits.count + 1);
    waits.longest = std::max(waits.longest, wait);
    ++waits.count;
}

std::vector<MemberFigures> memberFigures(const History& history, const std::vector<Grant>& grants)
{
    std::vector<MemberFigures> result(history.members().size());
    for (const Grant& grant : grants) {
        MemberFigures& figures = result[grant.hold->process];
        const Microseconds wait = grant.wait->to - grant.wait->from;
        ++figures.holds;
        count(figures.all, wait);
        if (!spansStaleness(history, *grant.wait))
            count(figures.ordinary, wait);
    }
    return result;
}

/// Whether the directory has a writer's lock file all that time.
bool isWriters(const History& history, const Interval& interval)
{
    return interval.activity == Activity::writing ||
           (interval.activity == Activity::leftBehind && history.members()[interval.process].role == Role::writer);
}

/// Whether two intervals of different processes should have no time in common.
bool exclude(const History& history, const Interval& a, const Interval& b)
{
    const bool inside = a.activity != Activity::waiting && b.activity != Activity::waiting;
    return inside && a.process != b.process && (isWriters(history, a) || isWriters(history, b));
}

/// The last interval that ended during a wait and before which it could not
/// end; null when there was none.
const Interval* lastInTheWay(const History& history, const Grant& grant)
{
    const Interval* last = nullptr;
    for (const Interval& other : history.intervals())
        if (exclude(history, other, *grant.hold) && other.to > grant.wait->from && other.to <= grant.hold->from &&
            (!last || other.to > last->to))
            last = &other;
    return last;
}

Handovers handoversTo(Activity activity, const History& history, const std::vector<Grant>& grants)
{
    std::vector<Microseconds> gaps;
    for (const Grant& grant : grants) {
        const Interval* const last = grant.hold->activity == activity ? lastInTheWay(history, grant) : nullptr;
        if (last && last->activity != Activity::leftBehind)
            gaps.push_back(grant.hold->from - last->to);
    }
    Handovers result;
    if (gaps.empty())
        return result;
    std::sort(gaps.begin(), gaps.end());
    result.count = static_cast<int>(gaps.size());
    result.median = gaps[gaps.size() / 2];
    result.longest = gaps.back();
    return result;
}

int overlapsOf(const History& history)
{
    const std::vector<Interval>& intervals = history.intervals();
    int overlaps = 0;
    for (std::size_t i = 0; i < intervals.size(); ++i)
        for (std::size_t j = i + 1; j < intervals.size(); ++j)
            overlaps += exclude(history, intervals[i], intervals[j]) && meet(intervals[i], intervals[j]) ? 1 : 0;
    return overlaps;
}

/// From the beginning of the writing to the end of the reading that a downgrade
/// joins.
Interval spanOf(const Downgrade& downgrade, const std::vector<Interval>& intervals)
{
    Interval span = {downgrade.process, Activity::writing, downgrade.time, downgrade.time, 0};
    for (const Interval& interval : intervals) {
        if (interval.process != downgrade.process || !isHold(interval))
            continue;
        if (interval.to == downgrade.time)
            span.from = interval.from;
        if (interval.from == downgrade.time)
            span.to = interval.to;
    }
    return span;
}

int intrudersOf(const History& history)
{
    int intruders = 0;
    for (const Downgrade& downgrade : history.downgrades()) {
        const Interval span = spanOf(downgrade, history.intervals());
        for (const Interval& other : history.intervals())
            intruders += other.activity == Activity::writing && other.process != span.process && meet(other, span);
    }
    return intruders;
}

Readings sumOf(const std::vector<Readings>& members)
{
    Readings sum;
    for (const Readings& readings : members) {
        sum.verified += readings.verified;
        sum.unfinished += readings.unfinished;
        sum.torn += readings.torn;
    }
    return sum;
}

}  // namespace

Figures figuresOf(const History& history)
{
    const std::vector<Grant> grants = grantsOf(history);
    Figures figures;
    figures.members = memberFigures(history, grants);
    figures.holds = static_cast<int>(grants.size());
    figures.toReaders = handoversTo(Activity::reading, history, grants);
    figures.toWriters = handoversTo(Activity::writing, history, grants);
    figures.overlapsOfIntervals = overlapsOf(history);
    figures.intruders = intrudersOf(history);
    figures.readings = sumOf(history.readings());
    return figures;
}

}  // namespace demo
}  // namespace zorvel
