#pragma once

#include "examples/deploy_demo/svg.h"

namespace zorvel {
namespace demo {

/// The centre of a kill.
void drawCross(Svg& svg, double x, double y);

/// Points at the time when somebody removed a stale lock file.
void drawWedge(Svg& svg, double x, double y);

/// The centre of a downgrade.
void drawDiamond(Svg& svg, double x, double y);

}  // namespace demo
}  // namespace zorvel
