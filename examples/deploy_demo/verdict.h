#pragma once

#include "examples/deploy_demo/cast.h"
#include "examples/deploy_demo/figures.h"

namespace zorvel {
namespace demo {

/// Everything in a history that makes the demo a failure, a line each.
std::vector<std::string> verdict(const Options& options, const Cast& cast, const History& history,
                                 const Figures& figures);

/// What is wrong with the directory in the end.
std::vector<std::string> inspect(const std::filesystem::path& directory, const Cast& cast);

}  // namespace demo
}  // namespace zorvel
