#pragma once

#include "examples/deploy_demo/time_scale.h"

#include <string>
#include <vector>

namespace zorvel {
namespace demo {

/// A death, or the end of what it left behind: a line across all lanes, with
/// its text beside the line's top in a row of its own.
struct Moment
{
    double x;
    std::string look;  ///< "kill", "heir"
    std::string text;
    bool left = false;  ///< the text is left of the line
    int row = 0;        ///< counted from the top
};

/// Of a finished history, placed so that no line runs through a text and every
/// text ends before `right`.
std::vector<Moment> momentsOf(const History& history, const TimeScale& scale, double right);

/// How wide a text is drawn, about.
double widthOf(const std::string& text);

}  // namespace demo
}  // namespace zorvel
