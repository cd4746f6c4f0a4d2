/// Several processes deploy numbered releases into one directory in turn, each
/// under the exclusive lock of that directory; one of them is killed while it
/// is inside. At the end a table and a picture of who held and who queued.

#include "examples/deploy_demo/figures.h"
#include "examples/deploy_demo/play.h"
#include "examples/deploy_demo/release_store.h"
#include "examples/deploy_demo/scratch_directory.h"
#include "examples/deploy_demo/timeline.h"

#include <CLI/CLI.hpp>

#include <fstream>
#include <iostream>
#include <stdexcept>

using namespace zorvel::demo;

namespace fs = std::filesystem;

namespace {

const int somethingWrong = 1;
const int interrupted = 130;

struct Options
{
    int processes = 6;
    int releases = 12;
    bool noKill = false;
    std::string output = ".";
    std::string worker;
    std::string windowsWorker;
    std::string windowsRunner;
};

void declare(CLI::App& app, Options& options)
{
    app.add_option("--processes", options.processes, "How many take part")->check(CLI::Range(2, 20))->capture_default_str();
    app.add_option("--releases", options.releases, "How many each of them deploys")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    app.add_flag("--no-kill", options.noKill, "Kill nobody");
    app.add_option("--output", options.output, "Where timeline.svg is written and the processes meet")->capture_default_str();
    app.add_option("--worker", options.worker, "The worker program (default: deploy_worker beside this program)");
    CLI::Option* const windows =
        app.add_option("--windows-worker", options.windowsWorker, "A Windows worker program, for every other process");
    app.add_option("--windows-runner", options.windowsRunner, "Runs a Windows program: RUNNER CODEPAGE PROGRAM ...")
        ->needs(windows);
}

/// The one who is killed: a Windows program, if there are any.
int victimOf(const Options& options)
{
    return options.noKill ? -1 : options.processes / 4 * 2 + 1;
}

std::vector<std::string> commandOf(const Options& options, bool windows)
{
    std::vector<std::string> command;
    if (windows && !options.windowsRunner.empty())
        command = {options.windowsRunner, "1252"};
    command.push_back(windows ? options.windowsWorker : options.worker);
    return command;
}

Cast castOf(const Options& options, const fs::path& directory)
{
    Cast cast;
    const int fatalTurn = (options.releases + 2) / 3;
    for (int i = 0; i < options.processes; ++i) {
        const bool windows = i % 2 == 1 && !options.windowsWorker.empty();
        const bool victim = i == victimOf(options);
        const std::string name = "P" + std::to_string(i + 1);
        std::vector<std::string> command = commandOf(options, windows);
        for (const std::string& argument : {directory.string(), name, std::to_string(options.releases),
                                            std::to_string(victim ? fatalTurn : 0)})
            command.push_back(argument);
        cast.members.push_back({name, windows ? "Wine" : "Linux"});
        cast.commands.push_back(command);
        cast.releases += victim ? fatalTurn - 1 : options.releases;
    }
    return cast;
}

/// What the directory holds in the end must be what the processes reported.
std::vector<std::string> inspect(const fs::path& directory, const Cast& cast, const History& history)
{
    std::vector<std::string> problems;
    const ReleaseStore store(directory);
    if (store.current() != cast.releases || history.deployed() != cast.releases)
        problems.push_back("the current release is " + std::to_string(store.current()) + ", " +
                           std::to_string(history.deployed()) + " were deployed, it should be " +
                           std::to_string(cast.releases));
    for (int i = 1; i <= cast.releases; ++i)
        if (!store.isWhole(i))
            problems.push_back("release " + std::to_string(i) + " is not whole");
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        const std::string name = entry.path().filename().string();
        if (name != "current" && name != "releases")
            problems.push_back("left behind: " + name);
    }
    return problems;
}

void writePicture(const fs::path& name, const History& history)
{
    std::ofstream file(name, std::ios::binary);
    file << timelineOf(history);
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + name.string());
}

/// Everything that makes the demo a failure.
std::vector<std::string> verdict(const Options& options, const Figures& figures, const History& history)
{
    std::vector<std::string> problems;
    if (history.strangersMet() + figures.overlapsOfIntervals > 0)
        problems.push_back("two processes were inside at once");
    if (!options.noKill && !(history.kill().inside && history.takeOver().happened))
        problems.push_back("no holder was killed and its lock taken over");
    return problems;
}

int report(const Options& options, const Play& play, const std::vector<std::string>& leftovers, int releases)
{
    const History& history = play.history();
    const Figures figures = figuresOf(history);
    std::cout << '\n';
    printTable(std::cout, history, figures);
    const fs::path picture = fs::path(options.output) / "timeline.svg";
    writePicture(picture, history);

    std::vector<std::string> problems = verdict(options, figures, history);
    problems.insert(problems.end(), play.problems().begin(), play.problems().end());
    problems.insert(problems.end(), leftovers.begin(), leftovers.end());
    if (problems.empty())
        std::cout << "in the end: releases 1 to " << releases << " are all whole, no lock file is left\n";
    std::cout << "picture: " << picture.string() << std::endl;
    for (const std::string& problem : problems)
        std::cerr << "WRONG: " << problem << std::endl;
    return problems.empty() ? 0 : somethingWrong;
}

int run(const Options& options)
{
    // With one release each the others may be done before the kill.
    if (!options.noKill && options.releases < 2)
        throw std::invalid_argument("--releases must be at least 2, or nobody killed (--no-kill)");
    const ScratchDirectory directory(options.output);
    const Cast cast = castOf(options, directory.path());
    Progress progress(std::cout, outputIsTerminal());
    Play play(cast, directory.path(), progress);
    if (!play.run()) {
        std::cerr << "interrupted" << std::endl;
        return interrupted;
    }
    return report(options, play, inspect(directory.path(), cast, play.history()), cast.releases);
}

}  // namespace

int main(int argc, char** argv)
{
    CLI::App app("Processes deploy releases into one directory in turn, under its lock");
    Options options;
    declare(app, options);
    CLI11_PARSE(app, argc, argv);
    try {
        if (options.worker.empty())
            options.worker = (fs::path(programPath()).parent_path() / "deploy_worker").string();
        return run(options);
    } catch (const std::exception& error) {
        std::cerr << "deploy_demo: " << error.what() << std::endl;
        return somethingWrong;
    }
}
