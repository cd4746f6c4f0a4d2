#pragma once

#include "examples/deploy_demo/history.h"
#include "examples/deploy_demo/svg.h"

namespace zorvel {
namespace demo {

/// Explains what occurs in the picture of a history, and nothing else: one row,
/// and below it another one when somebody was killed. `y` is the middle of the
/// first row.
void drawLegend(Svg& svg, const History& history, double x, double y);

}  // namespace demo
}  // namespace zorvel
