#pragma once

#include "examples/deploy_demo/history.h"

namespace zorvel {
namespace demo {

/// Puts seconds since the first request on the picture's horizontal axis. Most
/// of the time in which nothing happens but a dead holder's lock going stale
/// is left out.
class TimeScale
{
public:
    /// From one horizontal position to the other.
    TimeScale(const History& history, double left, double right);

    /// The position of a time.
    double at(Microseconds time) const { return atSecond(static_cast<double>(time - m_begin) / 1e6); }
    double atSecond(double second) const;

    double length() const { return m_length; }
    bool isCut() const { return m_cutTo > m_cutFrom; }
    /// Seconds.
    double cutFrom() const { return m_cutFrom; }
    double cutTo() const { return m_cutTo; }

    /// Seconds between two labels of the axis.
    int step() const;

private:
    const Microseconds m_begin;
    const double m_left;
    double m_length;
    double m_cutFrom = 0;
    double m_cutTo = 0;
    double m_perSecond;
};

}  // namespace demo
}  // namespace zorvel
