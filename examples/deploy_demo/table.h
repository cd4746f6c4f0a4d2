#pragma once

#include "examples/deploy_demo/figures.h"

#include <ostream>

namespace zorvel {
namespace demo {

/// Of a finished history and its figures.
void printTable(std::ostream& out, const History& history, const Figures& figures);

}  // namespace demo
}  // namespace zorvel
