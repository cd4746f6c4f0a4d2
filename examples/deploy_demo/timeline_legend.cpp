#include "examples/deploy_demo/timeline_legend.h"

#include "examples/deploy_demo/timeline_moments.h"
#include "examples/deploy_demo/timeline_symbols.h"

#include <algorithm>

namespace zorvel {
namespace demo {

namespace {

const double rowPitch = 32;
const double sampleWidth = 30;
const double sampleHeight = 24;
const double thinSample = 8;

bool anyFound(const History& history, Finding finding)
{
    return std::any_of(history.intervals().begin(), history.intervals().end(),
                       [&](const Interval& interval) { return interval.found == finding; });
}

class Row
{
public:
    Row(Svg& svg, double x, double y) : m_svg(svg), m_x(x), m_y(y) {}

    void bar(const std::string& look, double height, const std::string& meaning)
    {
        m_svg.rectangle(look, m_x, m_y - height / 2, sampleWidth, height);
        explain(meaning);
    }

    void cross(const std::string& meaning)
    {
        drawCross(m_svg, m_x + sampleWidth / 2, m_y);
        explain(meaning);
    }

    void wedge(const std::string& meaning)
    {
        drawWedge(m_svg, m_x + 21, m_y);
        explain(meaning);
    }

    void downgrade(const std::string& meaning)
    {
        const double half = sampleWidth / 2;
        m_svg.rectangle("writing", m_x, m_y - sampleHeight / 2, half, sampleHeight);
        m_svg.rectangle("reading", m_x + half, m_y - sampleHeight / 2, half, sampleHeight);
        drawDiamond(m_svg, m_x + half, m_y);
        explain(meaning);
    }

private:
    void explain(const std::string& meaning)
    {
        const double beside = sampleWidth + 8;
        m_svg.text("text", m_x + beside, m_y + 4.5, meaning);
        m_x += beside + widthOf(meaning) + 14;
    }

    Svg& m_svg;
    double m_x;
    const double m_y;
};

void drawUnfinished(Row& row, const History& history)
{
    if (anyFound(history, Finding::unfinished))
        row.bar("unfinished", sampleHeight - 2, "finds an unfinished release, serves nothing");
}

void drawDeaths(Row row, const History& history)
{
    row.cross("kill -9");
    row.bar("dead-writer", sampleHeight, "dead writer's lock file");
    row.bar("dead-reader", sampleHeight, "dead reader's lock file");
    row.wedge("removes it when it is stale");
    drawUnfinished(row, history);
}

}  // namespace

void drawLegend(Svg& svg, const History& history, double x, double y)
{
    Row row(svg, x, y);
    row.bar("writing", sampleHeight, "writes");
    row.bar("reading", sampleHeight, "reads");
    row.bar("waiting", thinSample, "waits");
    if (!history.downgrades().empty())
        row.downgrade("downgrade: the writer goes on as a reader");
    if (anyFound(history, Finding::torn))
        row.bar("torn", sampleHeight, "torn read");
    if (history.deaths().empty())
        drawUnfinished(row, history);
    else
        drawDeaths(Row(svg, x, y + rowPitch), history);
}

}  // namespace demo
}  // namespace zorvel
