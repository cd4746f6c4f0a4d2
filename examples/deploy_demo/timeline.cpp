#include "examples/deploy_demo/timeline.h"

#include "examples/deploy_demo/svg.h"
#include "examples/deploy_demo/time_scale.h"
#include "examples/deploy_demo/timeline_legend.h"
#include "examples/deploy_demo/timeline_moments.h"
#include "examples/deploy_demo/timeline_style.h"
#include "examples/deploy_demo/timeline_symbols.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace zorvel {
namespace demo {

namespace {

const double width = 1200;
const double margin = 24;
const double legendMiddle = 82;
/// Of the lanes, where no moments are marked above them.
const double lanesTop = 116;
const double momentsTop = 148;
const double momentPitch = 20;
const double lanesLeft = 142;
const double lanePitch = 40;
const double barHeight = 24;
const double waitHeight = 8;
const double axisRoom = 64;

std::string secondsText(double seconds, int digits)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(digits) << seconds << " s";
    return text.str();
}

class Picture
{
public:
    Picture(const History& history, const std::string& rule)
        : m_history(history),
          m_rule(rule),
          m_scale(history, lanesLeft, width - margin),
          m_moments(momentsOf(history, m_scale, width - margin)),
          m_top(m_moments.empty() ? lanesTop : momentsTop + momentPitch * static_cast<double>(m_moments.size())),
          m_bottom(m_top + lanePitch * static_cast<double>(history.members().size())),
          m_svg(width, m_bottom + axisRoom, timelineStyle, timelineDefinitions)
    {
    }

    std::string draw()
    {
        m_svg.rectangle("page", 0, 0, width, m_bottom + axisRoom);
        drawHead();
        drawLegend(m_svg, m_history, margin, legendMiddle);
        drawLanes();
        for (const Interval& interval : m_history.intervals())
            drawInterval(interval);
        for (const Downgrade& downgrade : m_history.downgrades())
            drawDiamond(m_svg, m_scale.at(downgrade.time), middle(downgrade.process));
        for (const TimeScale::Cut& cut : m_scale.cuts())
            drawCut(cut);
        drawAxis();
        drawMoments();
        for (const Death& death : m_history.deaths())
            drawDeath(death);
        return m_svg.document();
    }

private:
    double middle(std::size_t process) const { return m_top + lanePitch * (static_cast<double>(process) + 0.5); }
    double second(Microseconds time) const { return static_cast<double>(time - m_history.begin()) / 1e6; }
    std::string name(std::size_t process) const { return m_history.members()[process].name; }

    void drawHead()
    {
        m_svg.text("title", margin, 34, "Who wrote to the directory, who read it and who waited");
        const long writers = std::count_if(m_history.members().begin(), m_history.members().end(),
                                           [](const Member& member) { return member.role == Role::writer; });
        m_svg.text("small", margin, 54,
                   std::to_string(writers) + " processes deployed " + std::to_string(m_history.deployed()) +
                       " releases into one directory, " + std::to_string(m_history.members().size() - writers) +
                       " served and verified them, " + m_rule);
    }

    void drawLanes()
    {
        for (std::size_t i = 0; i < m_history.members().size(); ++i) {
            const Member& member = m_history.members()[i];
            const std::string role = member.role == Role::writer ? " writer" : " reader";
            m_svg.text("text", margin, middle(i) + 4.5, member.name + role + ", " + member.kind);
            m_svg.line("lane", lanesLeft, middle(i), width - margin, middle(i));
        }
    }

    std::string lookOf(const Interval& interval) const
    {
        switch (interval.activity) {
        case Activity::waiting: return "waiting";
        case Activity::writing: return "writing";
        case Activity::leftBehind:
            return m_history.members()[interval.process].role == Role::writer ? "dead-writer" : "dead-reader";
        case Activity::reading: break;
        }
        return interval.found == Finding::whole ? "reading" : interval.found == Finding::torn ? "torn" : "unfinished";
    }

    void drawInterval(const Interval& interval)
    {
        const double from = m_scale.at(interval.from);
        // What is shorter than a pixel is still seen.
        const double length = std::max(1.0, m_scale.at(interval.to) - from);
        const double height = interval.activity == Activity::waiting ? waitHeight : barHeight;
        m_svg.rectangle(lookOf(interval), from, middle(interval.process) - height / 2, length, height, tipOf(interval));
    }

    std::string tipOf(const Interval& interval) const
    {
        const std::string times = secondsText(second(interval.from), 3) + " to " + secondsText(second(interval.to), 3);
        const std::string release = " release " + std::to_string(interval.release);
        const std::string torn = interval.found == Finding::torn ? ", torn" : "";
        const std::string deed = interval.activity == Activity::waiting      ? " waits"
                                 : interval.activity == Activity::leftBehind ? " is dead" + ("," + release)
                                 : interval.activity == Activity::writing    ? " writes" + release
                                 : interval.found == Finding::unfinished     ? " finds" + release + " unfinished"
                                                                             : " reads" + release + torn;
        return name(interval.process) + deed + ": " + times;
    }

    /// A band across the lanes with torn edges.
    void drawCut(const TimeScale::Cut& cut)
    {
        const double from = m_scale.atSecond(cut.from);
        const double to = m_scale.atSecond(cut.to);
        m_svg.rectangle("cut", from, m_top, to - from, m_bottom - m_top);
        for (const double x : {from, to}) {
            std::ostringstream data;
            data << "M" << x << ' ' << m_top;
            for (double y = m_top + 5; y <= m_bottom; y += 10)
                data << " l4 5 l-4 5";
            m_svg.path("edge", data.str());
        }
        const double centre = (from + to) / 2;
        m_svg.text("text", centre, (m_top + m_bottom) / 2 - 2, secondsText(cut.to - cut.from, 1), "middle");
        m_svg.text("text", centre, (m_top + m_bottom) / 2 + 16, "left out", "middle");
    }

    void drawAxis()
    {
        m_svg.line("axis", lanesLeft, m_bottom, width - margin, m_bottom);
        for (int i = 0; i <= static_cast<int>(m_scale.length()); i += m_scale.step()) {
            if (m_scale.isCutOut(i))
                continue;
            const double x = m_scale.atSecond(i);
            m_svg.line("tick", x, m_bottom, x, m_bottom + 6);
            m_svg.text("small", x, m_bottom + 21, std::to_string(i), "middle");
        }
        m_svg.text("small", (lanesLeft + width - margin) / 2, m_bottom + 44, "seconds since the first request",
                   "middle");
    }

    void drawMoments()
    {
        for (const Moment& moment : m_moments) {
            const double y = momentsTop + momentPitch * moment.row;
            m_svg.line(moment.look + " line", moment.x, y - 12, moment.x, m_bottom);
            m_svg.text(moment.look + " moment", moment.left ? moment.x - 7 : moment.x + 7, y, moment.text,
                       moment.left ? "end" : "start");
        }
    }

    void drawDeath(const Death& death)
    {
        drawCross(m_svg, m_scale.at(death.time), middle(death.process));
        if (death.cleared)
            drawWedge(m_svg, m_scale.at(death.clearedAt), middle(death.heir));
    }

    const History& m_history;
    const std::string m_rule;
    const TimeScale m_scale;
    const std::vector<Moment> m_moments;
    const double m_top;
    const double m_bottom;
    Svg m_svg;
};

}  // namespace

std::string timelineOf(const History& history, const std::string& rule)
{
    return Picture(history, rule).draw();
}

}  // namespace demo
}  // namespace zorvel
