#pragma once

#include "examples/deploy_demo/history.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zorvel {
namespace demo {

struct Options
{
    int writers = 2;
    int readers = 4;
    /// That each writer deploys.
    int releases = 6;
    bool noKill = false;
    bool noLock = false;
    std::string output = ".";
    std::string worker;
    std::string windowsWorker;
    std::string windowsRunner;
};

/// Who takes part.
struct Cast
{
    std::vector<Member> members;
    /// The command of each member's process.
    std::vector<std::vector<std::string>> commands;
    /// The number of the last release, when all goes as planned; the first one
    /// is there before the play begins.
    int lastRelease = 1;
    int downgrades = 0;
    /// Which member makes them.
    std::size_t verifier = 0;
};

/// The processes meet in `directory`. Makes a directory below it for each of
/// them when they are not to lock the same one.
///
/// Writer 1 verifies its releases as a reader. One writer and one reader are to
/// be killed: Windows programs, if there are any.
Cast castOf(const Options& options, const std::filesystem::path& directory);

/// "writers W1 (verifies its own releases as a reader) and W2, readers R1 and
/// R2"
std::string introduction(const Cast& cast);

}  // namespace demo
}  // namespace zorvel
