#include "examples/deploy_demo/time_scale.h"

#include <algorithm>

namespace zorvel {
namespace demo {

namespace {

const double cutWidth = 84;
/// Seconds that are shown on either side of the cut, and the least that is
/// worth one.
const double shownBeside = 1.5;
const double worthCutting = 4;

}  // namespace

TimeScale::TimeScale(const History& history, double left, double right)
    : m_begin(history.begin()),
      m_left(left),
      m_length(std::max(0.1, static_cast<double>(history.end() - history.begin()) / 1e6))
{
    if (history.takeOver().happened) {
        const double from = static_cast<double>(history.kill().time - m_begin) / 1e6 + shownBeside;
        const double to = static_cast<double>(history.takeOver().time - m_begin) / 1e6 - shownBeside;
        if (to - from > worthCutting) {
            m_cutFrom = from;
            m_cutTo = to;
        }
    }
    const double width = right - left - (isCut() ? cutWidth : 0);
    m_perSecond = width / (m_length - (m_cutTo - m_cutFrom));
}

double TimeScale::atSecond(double second) const
{
    if (!isCut() || second <= m_cutFrom)
        return m_left + second * m_perSecond;
    const double cutLeft = m_left + m_cutFrom * m_perSecond;
    if (second < m_cutTo)
        return cutLeft + cutWidth * (second - m_cutFrom) / (m_cutTo - m_cutFrom);
    return cutLeft + cutWidth + (second - m_cutTo) * m_perSecond;
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
