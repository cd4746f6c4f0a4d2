/// Writers deploy releases into one directory and readers serve them, all of
/// them under the read-write lock of that directory; a reader and a writer are
/// killed while they are inside. At the end a table and a picture of who held
/// and who waited.

#include "examples/deploy_demo/cast.h"
#include "examples/deploy_demo/marks.h"
#include "examples/deploy_demo/play.h"
#include "examples/deploy_demo/release_store.h"
#include "examples/deploy_demo/scratch_directory.h"
#include "examples/deploy_demo/table.h"
#include "examples/deploy_demo/timeline.h"
#include "examples/deploy_demo/verdict.h"

#include <CLI/CLI.hpp>

#include <fstream>
#include <iostream>
#include <stdexcept>

using namespace zorvel::demo;

namespace fs = std::filesystem;

namespace {

const int somethingWrong = 1;
const int interrupted = 130;

void declare(CLI::App& app, Options& options)
{
    app.add_option("--writers", options.writers, "How many deploy releases; the first one verifies each as a reader")
        ->check(CLI::Range(1, 10))
        ->capture_default_str();
    app.add_option("--readers", options.readers, "How many serve them")
        ->check(CLI::Range(1, 20))
        ->capture_default_str();
    app.add_option("--releases", options.releases, "How many each writer deploys")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    app.add_flag("--no-kill", options.noKill, "Kill nobody");
    app.add_flag("--no-lock", options.noLock,
                 "Each process locks a directory of its own, to show what the lock prevents: the demo fails");
    app.add_option("--output", options.output, "Where timeline.svg is written and the processes meet")
        ->capture_default_str();
    app.add_option("--worker", options.worker, "The worker program (default: deploy_worker beside this program)");
    CLI::Option* const windows =
        app.add_option("--windows-worker", options.windowsWorker, "A Windows worker program, for every other process");
    app.add_option("--windows-runner", options.windowsRunner, "Runs a Windows program: RUNNER CODEPAGE PROGRAM ...")
        ->needs(windows);
}

/// With fewer, nobody might be left to see a kill.
void checkKills(const Options& options)
{
    if (options.noKill)
        return;
    if (options.noLock)
        throw std::invalid_argument("--no-lock goes with --no-kill only: nobody waits for a dead process");
    if (options.writers < 2 || options.readers < 2 || options.releases < 4)
        throw std::invalid_argument("kills take two writers, two readers and four releases, or else --no-kill");
}

void writePicture(const fs::path& name, const Options& options, const History& history)
{
    std::ofstream file(name, std::ios::binary);
    file << timelineOf(history, options.noLock ? "each under a lock of its own" : "under its read-write lock");
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + name.string());
}

int report(const Options& options, const Cast& cast, const fs::path& directory, const Play& play)
{
    const History& history = play.history();
    const Figures figures = figuresOf(history);
    std::cout << '\n';
    printTable(std::cout, history, figures);
    const fs::path picture = fs::path(options.output) / "timeline.svg";
    writePicture(picture, options, history);

    std::vector<std::string> problems = verdict(options, cast, history, figures);
    for (const std::vector<std::string>& more : {play.problems(), inspect(directory, cast)})
        problems.insert(problems.end(), more.begin(), more.end());
    if (problems.empty())
        std::cout << "in the end: release " << cast.lastRelease << " is whole, no lock file is left\n";
    std::cout << "picture: " << picture.string() << std::endl;
    if (problems.empty())
        std::cout << "nothing went wrong" << std::endl;
    for (const std::string& problem : problems)
        std::cerr << "WRONG: " << problem << std::endl;
    return problems.empty() ? 0 : somethingWrong;
}

int run(const Options& options)
{
    checkKills(options);
    const ScratchDirectory directory(options.output);
    ReleaseStore(directory.path()).create("demo");
    Marks(directory.path()).create();
    const Cast cast = castOf(options, directory.path());
    Progress progress(std::cout, outputIsTerminal());
    Play play(cast, directory.path(), progress);
    if (!play.run()) {
        std::cerr << "interrupted" << std::endl;
        return interrupted;
    }
    return report(options, cast, directory.path(), play);
}

}  // namespace

int main(int argc, char** argv)
{
    CLI::App app("Writers deploy releases into one directory and readers serve them, under its read-write lock");
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
