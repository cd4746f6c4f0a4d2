// The least that a lock by a file needs, by bare calls: one exclusive creation and one removal, and the prescribed
// pause.
//
//   locks_bare pauses|create-remove DIR cycles COUNT

#include "bench/locks/contender.h"

#include <windows.h>

#include <iostream>
#include <stdexcept>

namespace {

using namespace zorvel::bench;

const DWORD pauseMsec = 5;

void require(bool isDone)
{
    if (!isDone)
        throw std::runtime_error("a step failed");
}

void createNew(const std::string& path)
{
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    require(file != INVALID_HANDLE_VALUE);
    require(CloseHandle(file));
}

Lock makeLock(const std::string& kind, const std::string& directory)
{
    const std::string path = directory + "\\bare.lock";
    if (kind == "pauses")
        return Lock{[] {
                        Sleep(pauseMsec);
                        return true;
                    },
                    [] {}, &ownProcessorTime};
    return Lock{[=] {
                    Sleep(pauseMsec);
                    createNew(path);
                    return true;
                },
                [=] { require(DeleteFileA(path.c_str())); }, &ownProcessorTime};
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> words = wordsOf(argc, argv);
    if (words.size() < 3) {
        std::cerr << "see the beginning of bare_steps_windows.cpp" << std::endl;
        return 2;
    }
    return carryOut(makeLock(words[0], words[1]), std::vector<std::string>(words.begin() + 2, words.end()));
}
