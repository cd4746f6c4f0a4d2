/// One of the processes that share a directory of releases:
///
///   deploy_worker DIRECTORY LOCKED NAME writer RELEASES STALL_AT VERIFIES
///   deploy_worker DIRECTORY LOCKED NAME reader STALL_FROM
///
/// A writer deploys so many releases, a reader serves them until the store in
/// DIRECTORY is closed, each under its lock on the directory LOCKED. What
/// happens is reported on standard output (see event.h). Before it begins, the
/// worker answers every line "clock" with its time and waits for the line "go".
/// In its STALL_ATth deployment, or its first reading of a release from number
/// STALL_FROM on (0: in none), it stands still half way, to be killed there.

#include "examples/deploy_demo/worker/reader.h"
#include "examples/deploy_demo/worker/writer.h"

#include <cstdlib>
#include <iostream>

using namespace zorvel::demo;

namespace {

void say(Word word)
{
    std::cout << lineOf({0, now(), word, 0, "-"}) << std::endl;
}

/// False when the input ends without "go".
bool waitForGo()
{
    std::string line;
    while (std::getline(std::cin, line)) {
        if (line == "go")
            return true;
        say(Word::clock);
    }
    return false;
}

template <class Role, class Part>
int play(const Place& place, const Part& part)
{
    Role role(place, part);
    say(Word::ready);
    if (!waitForGo())
        return 1;
    role.run();
    say(Word::done);
    return 0;
}

int run(const std::vector<std::string>& words)
{
    const Place place = {words[0], words[1], words[2]};
    if (words[3] == "reader")
        return play<Reader>(place, std::atoi(words[4].c_str()));
    Writer::Part part;
    part.releases = std::atoi(words[4].c_str());
    part.stallAt = std::atoi(words[5].c_str());
    part.verifies = words[6] == "1";
    return play<Writer>(place, part);
}

bool areComplete(const std::vector<std::string>& words)
{
    return (words.size() == 5 && words[3] == "reader") || (words.size() == 7 && words[3] == "writer");
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    if (!areComplete(words)) {
        std::cerr << "usage: deploy_worker DIRECTORY LOCKED NAME writer RELEASES STALL_AT VERIFIES\n"
                     "       deploy_worker DIRECTORY LOCKED NAME reader STALL_FROM\n";
        return 2;
    }
    try {
        return run(words);
    } catch (const std::exception& error) {
        std::cerr << words[2] << ": " << error.what() << std::endl;
        return 1;
    }
}
