/// Runs a command while it holds a lock on a directory, or lists the
/// directory's locks (see help.cpp).

#include "examples/zvlock/exit_status.h"
#include "examples/zvlock/lock_listing.h"
#include "examples/zvlock/options.h"
#include "examples/zvlock/turn.h"

#include <zorvel/zorvel.h>

#include <iostream>
#include <stdexcept>

using namespace zorvel::zvlock;

namespace {

void requireDirectory(const std::string& path)
{
    if (!zvFileOrDirExists(path.c_str()))
        throw std::runtime_error("no such directory");
    if (!zvIsDirectory(path.c_str()))
        throw std::runtime_error("not a directory");
}

/// Signals wait: the file that tells the server's time must not stay.
int list(const Options& options, const Turn& turn)
{
    const std::vector<LockEntry> entries = lockEntriesOf(options.directory);
    if (const int signal = turn.signalled())
        return endedBySignal + signal;
    print(std::cout, entries);
    std::cout.flush();
    return std::cout ? done : failed;
}

int run(const Options& options)
{
    Turn turn;
    const Signals signals([&turn](const Signal& signal) { turn.onSignal(signal); });
    try {
        requireDirectory(options.directory);
        return options.status ? list(options, turn) : turn.run(options);
    } catch (const std::exception& error) {
        std::cerr << "zvlock: " << options.directory << ": " << error.what() << '\n';
        return failed;
    }
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        int status = done;
        const std::optional<Options> options = optionsOf(argumentsOf(argc, argv), status);
        return options ? run(*options) : status;
    } catch (const std::exception& error) {
        std::cerr << "zvlock: " << error.what() << '\n';
        return failed;
    }
}
