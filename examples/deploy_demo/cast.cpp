#include "examples/deploy_demo/cast.h"

#include "examples/deploy_demo/text.h"

namespace zorvel {
namespace demo {

namespace fs = std::filesystem;

namespace {

/// Of both roles.
const int verifier = 0;
const int victim = 1;

bool isWindows(const Options& options, int number)
{
    return number % 2 == 1 && !options.windowsWorker.empty();
}

std::string lockedBy(const Options& options, const fs::path& directory, const std::string& name)
{
    if (!options.noLock)
        return directory.string();
    const fs::path own = directory / "own" / name;
    fs::create_directories(own);
    return own.string();
}

void add(Cast& cast, const Options& options, const fs::path& directory, Role role, int number,
         const std::vector<std::string>& part)
{
    const bool windows = isWindows(options, number);
    const std::string name = (role == Role::writer ? "W" : "R") + std::to_string(number + 1);
    std::vector<std::string> command;
    if (windows && !options.windowsRunner.empty())
        command = {options.windowsRunner, "1252"};
    for (const std::string& word : {windows ? options.windowsWorker : options.worker, directory.string(),
                                    lockedBy(options, directory, name), name})
        command.push_back(word);
    command.insert(command.end(), part.begin(), part.end());
    cast.members.push_back({name, windows ? "Wine" : "Linux", role});
    cast.commands.push_back(command);
}

std::string introductionOf(Role role, const Cast& cast)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < cast.members.size(); ++i)
        if (cast.members[i].role == role)
            names.push_back(cast.members[i].name +
                            (i == cast.verifier ? " (verifies its own releases as a reader)" : ""));
    return (role == Role::writer ? "writer" : "reader") + std::string(names.size() == 1 ? " " : "s ") +
           enumeration(names);
}

}  // namespace

Cast castOf(const Options& options, const fs::path& directory)
{
    Cast cast;
    const int fatalTurn = (2 * options.releases + 2) / 3;
    const int fatalRelease = 1 + options.releases / 3;
    for (int i = 0; i < options.writers; ++i) {
        const bool dies = i == victim && !options.noKill;
        add(cast, options, directory, Role::writer, i,
            {"writer", std::to_string(options.releases), std::to_string(dies ? fatalTurn : 0),
             i == verifier ? "1" : "0"});
        cast.lastRelease += dies ? fatalTurn - 1 : options.releases;
    }
    for (int i = 0; i < options.readers; ++i)
        add(cast, options, directory, Role::reader, i,
            {"reader", std::to_string(i == victim && !options.noKill ? fatalRelease : 0)});
    cast.downgrades = options.releases;
    cast.verifier = verifier;
    return cast;
}

std::string introduction(const Cast& cast)
{
    return introductionOf(Role::writer, cast) + ", " + introductionOf(Role::reader, cast);
}

}  // namespace demo
}  // namespace zorvel
