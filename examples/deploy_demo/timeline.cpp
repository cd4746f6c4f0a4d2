#include "examples/deploy_demo/timeline.h"

#include "examples/deploy_demo/svg.h"
#include "examples/deploy_demo/time_scale.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

namespace zorvel {
namespace demo {

namespace {

const char style[] = R"css(text { font-family: "Helvetica Neue", Helvetica, Arial, "Liberation Sans", sans-serif; font-size: 13px }
.title { font-size: 17px; font-weight: bold }
.small { font-size: 12px }
.page { fill: #ffffff }
.title, .text { fill: #1f2328 }
.small { fill: #57606a }
.lane, .axis, .tick { stroke: #8c959f; stroke-width: 1 }
.lane { stroke: #d0d7de }
.queued { fill: #e8ac3a }
.holding { fill: #0a5fc2 }
.left { fill: url(#stripes); stroke: #c9182b; stroke-width: 1 }
.stripe { stroke: #c9182b; stroke-width: 3 }
.kill { stroke: #c9182b; stroke-width: 1.5; stroke-dasharray: 4 3 }
.cross { stroke: #c9182b; stroke-width: 3.5; fill: none }
.halo { stroke: #ffffff; stroke-width: 7.5; fill: none }
.killed { fill: #c9182b; font-weight: bold }
.heir { stroke: #17752f; stroke-width: 1.5; stroke-dasharray: 4 3 }
.wedge, .taken { fill: #17752f; font-weight: bold }
.cut { fill: #eaeef2 }
.edge { stroke: #8c959f; stroke-width: 1.5; fill: none }
@media (prefers-color-scheme: dark) {
.page { fill: #0d1117 }
.title, .text { fill: #e6edf3 }
.small { fill: #a3adb8 }
.axis, .tick { stroke: #7d8590 }
.lane { stroke: #363d47 }
.queued { fill: #c08a1e }
.holding { fill: #58a6ff }
.left { stroke: #ff7b85 }
.stripe { stroke: #ff7b85 }
.kill, .cross { stroke: #ff7b85 }
.halo { stroke: #0d1117 }
.killed { fill: #ff7b85 }
.heir { stroke: #56d364 }
.wedge, .taken { fill: #56d364 }
.cut { fill: #21262d }
.edge { stroke: #7d8590 }
}
)css";

const char definitions[] =
    R"xml(<pattern id="stripes" width="8" height="8" patternUnits="userSpaceOnUse" patternTransform="rotate(45)">
<line class="stripe" x1="2" y1="0" x2="2" y2="8"/>
</pattern>
)xml";

const double width = 1200;
const double margin = 24;
const double lanesLeft = 128;
const double lanesTop = 150;
const double lanePitch = 40;
const double barHeight = 24;
const double queueHeight = 10;
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
    explicit Picture(const History& history)
        : m_history(history),
          m_scale(history, lanesLeft, width - margin),
          m_bottom(lanesTop + lanePitch * static_cast<double>(history.members().size())),
          m_svg(width, m_bottom + axisRoom, style, definitions)
    {
    }

    std::string draw()
    {
        m_svg.rectangle("page", 0, 0, width, m_bottom + axisRoom);
        drawHead();
        drawLegend();
        drawLanes();
        for (const Interval& interval : m_history.intervals())
            drawInterval(interval);
        if (m_scale.isCut())
            drawCut();
        drawAxis();
        if (m_history.kill().happened)
            drawKill();
        if (m_history.takeOver().happened)
            drawTakeOver();
        return m_svg.document();
    }

private:
    double middle(std::size_t process) const { return lanesTop + lanePitch * (static_cast<double>(process) + 0.5); }
    double second(Microseconds time) const { return static_cast<double>(time - m_history.begin()) / 1e6; }
    std::string name(std::size_t process) const { return m_history.members()[process].name; }

    void drawHead()
    {
        m_svg.text("title", margin, 34, "Who held the directory and who queued for it");
        m_svg.text("small", margin, 54,
                   std::to_string(m_history.members().size()) + " processes deployed " +
                       std::to_string(m_history.deployed()) +
                       " releases into one directory, one at a time, under an exclusive directory lock");
    }

    void drawLegend()
    {
        double x = margin;
        legend(x, "holding", barHeight / 2, "holds the lock");
        legend(x, "queued", queueHeight / 2, "waits in the queue");
        if (m_history.takeOver().happened)
            legend(x, "left", barHeight / 2, "dead; its lock file lies there, going stale");
    }

    void legend(double& x, const std::string& look, double half, const std::string& meaning)
    {
        const double y = 78;
        m_svg.rectangle(look, x, y - half, 30, 2 * half);
        m_svg.text("text", x + 38, y + 4.5, meaning);
        x += 38 + 7 * static_cast<double>(meaning.size()) + 28;
    }

    void drawLanes()
    {
        for (std::size_t i = 0; i < m_history.members().size(); ++i) {
            m_svg.text("text", margin, middle(i) + 4.5, name(i) + "  " + m_history.members()[i].kind);
            m_svg.line("lane", lanesLeft, middle(i), width - margin, middle(i));
        }
    }

    void drawInterval(const Interval& interval)
    {
        const double from = m_scale.at(interval.from);
        // What is shorter than a pixel is still seen.
        const double length = std::max(1.0, m_scale.at(interval.to) - from);
        const bool queued = interval.activity == Activity::queued;
        const double height = queued ? queueHeight : barHeight;
        const std::string look = queued ? "queued" : interval.activity == Activity::holding ? "holding" : "left";
        m_svg.rectangle(look, from, middle(interval.process) - height / 2, length, height, tipOf(interval));
    }

    std::string tipOf(const Interval& interval) const
    {
        const std::string times =
            secondsText(second(interval.from), 3) + " to " + secondsText(second(interval.to), 3);
        if (interval.activity == Activity::queued)
            return name(interval.process) + " waits: " + times;
        const std::string release = "release " + std::to_string(interval.release) + ": " + times;
        return name(interval.process) + (interval.activity == Activity::holding ? " holds, " : " is dead, ") + release;
    }

    /// A band across the lanes with torn edges.
    void drawCut()
    {
        const double from = m_scale.atSecond(m_scale.cutFrom());
        const double to = m_scale.atSecond(m_scale.cutTo());
        m_svg.rectangle("cut", from, lanesTop, to - from, m_bottom - lanesTop);
        for (const double x : {from, to}) {
            std::ostringstream data;
            data << "M" << x << ' ' << lanesTop;
            for (double y = lanesTop + 5; y <= m_bottom; y += 10)
                data << " l4 5 l-4 5";
            m_svg.path("edge", data.str());
        }
        const double centre = (from + to) / 2;
        m_svg.text("text", centre, (lanesTop + m_bottom) / 2 - 2,
                   secondsText(m_scale.cutTo() - m_scale.cutFrom(), 1), "middle");
        m_svg.text("text", centre, (lanesTop + m_bottom) / 2 + 16, "left out", "middle");
    }

    void drawAxis()
    {
        m_svg.line("axis", lanesLeft, m_bottom, width - margin, m_bottom);
        for (int i = 0; i <= static_cast<int>(m_scale.length()); i += m_scale.step()) {
            if (m_scale.isCut() && i > m_scale.cutFrom() && i < m_scale.cutTo())
                continue;
            const double x = m_scale.atSecond(i);
            m_svg.line("tick", x, m_bottom, x, m_bottom + 6);
            m_svg.text("small", x, m_bottom + 21, std::to_string(i), "middle");
        }
        m_svg.text("small", (lanesLeft + width - margin) / 2, m_bottom + 44, "seconds since the first request",
                   "middle");
    }

    /// A line across all lanes, with its text in a row of its own above them:
    /// on the outer side as seen from the time that was waited for, if there is
    /// room.
    void drawMoment(const std::string& line, const std::string& look, double x, double row, const std::string& text,
                    bool leftOfLine)
    {
        const double room = 7.5 * static_cast<double>(text.size());
        const bool left = leftOfLine ? x - room > margin : x + room > width - margin;
        m_svg.line(line, x, row - 12, x, m_bottom);
        m_svg.text(look, left ? x - 7 : x + 7, row, text, left ? "end" : "start");
    }

    void drawKill()
    {
        const Kill& kill = m_history.kill();
        const double x = m_scale.at(kill.time);
        drawMoment("kill", "killed", x, lanesTop - 30,
                   name(kill.process) + " killed (kill -9)" +
                       (kill.inside ? " half way through release " + std::to_string(kill.release) : std::string()),
                   true);
        std::ostringstream cross;
        cross << "M" << x - 8 << ' ' << middle(kill.process) - 8 << " l16 16 m-16 0 l16 -16";
        m_svg.path("halo", cross.str());
        m_svg.path("cross", cross.str());
    }

    void drawTakeOver()
    {
        const TakeOver& next = m_history.takeOver();
        const double x = m_scale.at(next.time);
        drawMoment("heir", "taken", x, lanesTop - 10,
                   name(next.process) + " takes the stale lock over, " +
                       secondsText(second(next.time) - second(m_history.kill().time), 1) + " after the kill", false);
        std::ostringstream wedge;
        wedge << "M" << x << ' ' << middle(next.process) << " l-12 -8 l0 16 z";
        m_svg.path("wedge", wedge.str());
    }

    const History& m_history;
    const TimeScale m_scale;
    const double m_bottom;
    Svg m_svg;
};

}  // namespace

std::string timelineOf(const History& history)
{
    return Picture(history).draw();
}

}  // namespace demo
}  // namespace zorvel
