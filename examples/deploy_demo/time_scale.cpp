#include "examples/deploy_demo/time_scale.h"

#include <algorithm>

namespace zorvel {
namespace demo {

namespace {

const double cutWidth = 62;
/// Seconds that are shown on either side of a cut, and the least that is worth
/// one.
const double shownBeside = 1.2;
const double worthCutting = 4;

}  // namespace

TimeScale::TimeScale(const History& history, double left, double right)
    : m_begin(history.begin()),
      m_left(left),
      m_length(std::max(0.1, static_cast<double>(history.end() - history.begin()) / 1e6))
{
    for (const Death& death : history.deaths())
        if (death.cleared)
            cut(death);
    double shown = m_length;
    for (const Cut& cut : m_cuts)
        shown -= cut.to - cut.from;
    m_perSecond = (right - left - cutWidth * static_cast<double>(m_cuts.size())) / shown;
}

void TimeScale::cut(const Death& death)
{
    const double earliest = m_cuts.empty() ? 0 : m_cuts.back().to;
    const double from = static_cast<double>(death.time - m_begin) / 1e6 + shownBeside;
    const double to = static_cast<double>(death.clearedAt - m_begin) / 1e6 - shownBeside;
    if (from >= earliest && to - from > worthCutting)
        m_cuts.push_back({from, to});
}

double TimeScale::atSecond(double second) const
{
    double x = m_left + second * m_perSecond;
    for (const Cut& cut : m_cuts) {
        if (second <= cut.from)
            break;
        const double within = std::min(second, cut.to) - cut.from;
        x += cutWidth * within / (cut.to - cut.from) - within * m_perSecond;
    }
    return x;
}

bool TimeScale::isCutOut(double second) const
{
    return std::any_of(m_cuts.begin(), m_cuts.end(),
                       [&](const Cut& cut) { return second > cut.from && second < cut.to; });
}

int TimeScale::step() const
{
    const double leastBetweenLabels = 38;
    for (const int step : {1, 2, 5, 10, 20, 30})
        if (step * m_perSecond >= leastBetweenLabels)
            return step;
    return 60;
}

}  // namespace demo
}  // namespace zorvel
