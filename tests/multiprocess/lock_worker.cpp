/// One contender for a directory, as a program of its own on the shared
/// library:
///
///   lock_worker DIRECTORY ID HOLDS HOLD_MSEC
///
/// It says "ready", waits for a line of input, takes the directory HOLDS times
/// and says "waiting", "held" and "free" as it goes, then "done". Inside, it
/// proves that it is alone by creating a directory that must not exist: the
/// system lets one creator win, whatever the library under test does.

#include <zorvel/zorvel.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

namespace {

const int overlapFound = 3;
const int notAcquired = 4;

void say(const char* word)
{
    std::cout << word << std::endl;
}

class Contender
{
public:
    Contender(const std::string& directory, const std::string& id)
        : m_id(id), m_directory(directory), m_lock(directory, id, zvGetDefaultFSImp())
    {
    }

    /// Takes the directory once; the exit status when something is wrong.
    int hold(std::chrono::milliseconds duration)
    {
        say("waiting");
        if (!m_lock.acquire(false))
            return notAcquired;
        const std::filesystem::path mark = m_directory / "inside";
        if (!std::filesystem::create_directory(mark))
            return overlapFound;
        say("held");
        std::this_thread::sleep_for(duration);
        writeTurn();
        std::filesystem::remove(mark);
        if (!m_lock.release())
            return notAcquired;
        say("free");
        return 0;
    }

private:
    /// The order of all holds; a reader of it sees who overtook whom.
    void writeTurn() const { std::ofstream(m_directory / "turns", std::ios::app) << m_id << '\n'; }

    const std::string m_id;
    const std::filesystem::path m_directory;
    zvDirectoryExclusiveLock m_lock;
};

int run(const std::string& directory, const std::string& id, int holds, std::chrono::milliseconds duration)
{
    Contender contender(directory, id);
    say("ready");
    std::string go;
    std::getline(std::cin, go);
    for (int i = 0; i < holds; ++i)
        if (const int status = contender.hold(duration))
            return status;
    say("done");
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::cerr << "usage: lock_worker DIRECTORY ID HOLDS HOLD_MSEC\n";
        return 2;
    }
    try {
        return run(argv[1], argv[2], std::atoi(argv[3]), std::chrono::milliseconds(std::atoi(argv[4])));
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
