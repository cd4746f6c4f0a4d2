#include "examples/deploy_demo/timeline_symbols.h"

#include <sstream>

namespace zorvel {
namespace demo {

namespace {

/// SVG path commands from a point on.
void drawFrom(Svg& svg, const std::string& look, double x, double y, const std::string& commands)
{
    std::ostringstream data;
    data << "M" << x << ' ' << y << ' ' << commands;
    svg.path(look, data.str());
}

}  // namespace

void drawCross(Svg& svg, double x, double y)
{
    for (const char* const look : {"halo", "cross"})
        drawFrom(svg, look, x - 8, y - 8, "l16 16 m-16 0 l16 -16");
}

void drawWedge(Svg& svg, double x, double y)
{
    drawFrom(svg, "wedge", x, y, "l-13 -9 l0 18 z");
}

void drawDiamond(Svg& svg, double x, double y)
{
    drawFrom(svg, "diamond", x, y - 7, "l6 7 l-6 7 l-6 -7 z");
}

}  // namespace demo
}  // namespace zorvel
