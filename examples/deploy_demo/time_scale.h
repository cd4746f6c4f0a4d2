#pragma once

#include "examples/deploy_demo/history.h"

namespace zorvel {
namespace demo {

/// Puts seconds since the first request on the picture's horizontal axis. Most
/// of each time in which a dead process's lock file goes stale is left out.
class TimeScale
{
public:
    /// Seconds that are left out.
    struct Cut
    {
        double from;
        double to;
    };

    /// From one horizontal position to the other.
    TimeScale(const History& history, double left, double right);

    /// The position of a time.
    double at(Microseconds time) const { return atSecond(static_cast<double>(time - m_begin) / 1e6); }
    double atSecond(double second) const;

    double length() const { return m_length; }
    /// One after the other.
    const std::vector<Cut>& cuts() const { return m_cuts; }
    bool isCutOut(double second) const;

    /// Seconds between two labels of the axis.
    int step() const;

private:
    void cut(const Death& death);

    const Microseconds m_begin;
    const double m_left;
    const double m_length;
    std::vector<Cut> m_cuts;
    double m_perSecond = 0;
};

}  // namespace demo
}  // namespace zorvel
