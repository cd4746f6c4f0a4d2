#pragma once

#include "examples/deploy_demo/history.h"

#include <string>

namespace zorvel {
namespace demo {

/// A picture (SVG) of a finished history: one lane per process, who held and
/// who queued when. Legible on light and on dark pages. Equal histories give
/// equal pictures.
std::string timelineOf(const History& history);

}  // namespace demo
}  // namespace zorvel
