#include "examples/deploy_demo/verdict.h"

#include "examples/deploy_demo/release_store.h"

#include <algorithm>

namespace zorvel {
namespace demo {

namespace fs = std::filesystem;

namespace {

class Problems
{
public:
    void expectNone(int count, const std::string& what)
    {
        if (count > 0)
            m_lines.push_back(std::to_string(count) + ' ' + what);
    }

    void expect(bool right, const std::string& otherwise)
    {
        if (!right)
            m_lines.push_back(otherwise);
    }

    const std::vector<std::string>& lines() const { return m_lines; }

private:
    std::vector<std::string> m_lines;
};

bool died(const History& history, Role role)
{
    return std::any_of(history.deaths().begin(), history.deaths().end(), [&](const Death& death) {
        return death.inside && death.cleared && history.members()[death.process].role == role;
    });
}

/// A lock file is stale 30 s after its last refresh: that came up to a second
/// before the kill and is noted in whole seconds, as the present time is.
const Microseconds soonest = 27 * 1000 * 1000;

void judgeDeaths(Problems& problems, const History& history)
{
    problems.expect(died(history, Role::reader), "no reader was killed inside and its lock file removed");
    problems.expect(died(history, Role::writer), "no writer was killed inside and its lock file removed");
    for (const Death& death : history.deaths()) {
        const Member& dead = history.members()[death.process];
        problems.expect(dead.role == Role::reader || death.replaced,
                        "release " + std::to_string(death.release) + " was not deployed anew");
        problems.expect(!death.cleared || death.clearedAt - death.time >= soonest,
                        dead.name + "'s lock file was removed too soon");
    }
}

void judgeReaders(Problems& problems, const History& history)
{
    for (std::size_t i = 0; i < history.members().size(); ++i)
        problems.expect(history.members()[i].role == Role::writer || history.readings()[i].verified > 0,
                        history.members()[i].name + " has verified nothing");
}

}  // namespace

std::vector<std::string> verdict(const Options& options, const Cast& cast, const History& history,
                                 const Figures& figures)
{
    Problems problems;
    problems.expectNone(history.strangersMet(), "marks met of processes that should have been outside");
    problems.expectNone(figures.overlapsOfIntervals, "overlaps of a writer's time with another's");
    problems.expectNone(figures.intruders, "writers between a downgraded hold's beginning and its reading's end");
    problems.expectNone(figures.readings.torn, "torn reads");
    problems.expectNone(history.spoiled(), "releases that a live writer lost or had not finished");
    problems.expectNone(history.robbed(), "lock files removed whose owners live");
    problems.expect(static_cast<int>(history.downgrades().size()) == cast.downgrades, "not every release was verified");
    judgeReaders(problems, history);
    if (!options.noKill)
        judgeDeaths(problems, history);
    return problems.lines();
}

std::vector<std::string> inspect(const fs::path& directory, const Cast& cast)
{
    Problems problems;
    const ReleaseStore store(directory);
    const int release = store.manifest().release;
    problems.expect(release == cast.lastRelease, "the last release is " + std::to_string(release) + ", it should be " +
                                                     std::to_string(cast.lastRelease));
    problems.expect(store.isWhole(), "the last release is not whole");
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        const std::string name = entry.path().filename().string();
        problems.expect(!name.empty() && name[0] != '.', "left behind: " + name);
    }
    return problems.lines();
}

}  // namespace demo
}  // namespace zorvel
