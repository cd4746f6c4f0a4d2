// What stands behind dotlockfile, called as a library. It sleeps five seconds more after each failure.
//
//   locks_liblockfile RETRIES DIR cycles COUNT
//   locks_liblockfile RETRIES DIR contend LOG HOLD_MS

#include "bench/locks/contender.h"

#include <lockfile.h>

#include <iostream>

using namespace zorvel::bench;

int main(int argc, char** argv)
{
    const std::vector<std::string> words = wordsOf(argc, argv);
    if (words.size() < 4) {
        std::cerr << "see the beginning of liblockfile_locks_posix.cpp" << std::endl;
        return 2;
    }
    const int retries = std::stoi(words[0]);
    const std::string path = words[1] + "/peer.lock";
    const Lock lock{[=] { return lockfile_create(path.c_str(), retries, L_PID) == L_SUCCESS; },
                    [=] { lockfile_remove(path.c_str()); }, &ownProcessorTime};
    return carryOut(lock, std::vector<std::string>(words.begin() + 2, words.end()));
}
