#pragma once

#include "examples/deploy_demo/history.h"

#include <string>

namespace zorvel {
namespace demo {

/// A picture (SVG) of a finished history: one lane per process, who wrote, who
/// read and who waited when. `rule` says by what they kept out of each other's
/// way. Legible on light and on dark pages. Equal histories give equal
/// pictures.
std::string timelineOf(const History& history, const std::string& rule);

}  // namespace demo
}  // namespace zorvel
