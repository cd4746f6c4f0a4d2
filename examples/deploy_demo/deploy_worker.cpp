/// One of the processes that deploy releases into one directory in turn:
///
///   deploy_worker DIRECTORY NAME RELEASES STALL_AT
///
/// It reports each step on its standard output (see event.h). Before it begins
/// it answers every line "clock" with its time and waits for the line "go". In
/// its STALL_ATth release (0: in none) it stands still half way, to be killed
/// there.

#include "examples/deploy_demo/event.h"
#include "examples/deploy_demo/release_store.h"

#include <zorvel/zorvel.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

using namespace zorvel::demo;

namespace {

void say(Word word, int number = 0, const std::string& name = "-")
{
    std::cout << lineOf({0, now(), word, number, name}) << std::endl;
    if (!std::cout)
        throw std::runtime_error("nobody listens any more");
}

void pause(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// The same pauses in every run and in both builds.
std::minstd_rand seedOf(const std::string& name)
{
    std::seed_seq letters(name.begin(), name.end());
    return std::minstd_rand(letters);
}

class Deployer
{
public:
    Deployer(const std::string& directory, const std::string& name)
        : m_name(name),
          m_store(directory),
          m_random(seedOf(name)),
          m_lock(directory, name, zvGetDefaultFSImp())
    {
    }

    /// Makes the next release somewhere else, then deploys it alone.
    void turn(bool stalls)
    {
        pause(between(150, 700));
        say(Word::queue);
        if (!m_lock.acquire(false))
            throw std::runtime_error("a lock without a time limit was not acquired");
        say(Word::hold);
        enter();
        deploy(m_store.current() + 1, stalls);
        m_store.unmark();
        say(Word::leave);
        m_lock.release();
        say(Word::free);
    }

private:
    int between(int least, int most) { return std::uniform_int_distribution<int>(least, most)(m_random); }

    /// A mark that is there already is reported, whoever left it: only the one
    /// who watches all processes knows whether its owner is still alive.
    void enter()
    {
        if (m_store.mark(m_name))
            return;
        say(Word::met, 0, m_store.markedBy());
        m_store.unmark();
        if (!m_store.mark(m_name))
            say(Word::met, 0, m_store.markedBy());
    }

    void deploy(int release, bool stalls)
    {
        if (const int files = m_store.filesOf(release)) {
            say(Word::half, files);
            m_store.discard(release);
        }
        say(Word::start, release);
        m_store.begin(release);
        for (int file = 0; file < ReleaseStore::FILES_PER_RELEASE; ++file) {
            if (stalls && file == ReleaseStore::FILES_PER_RELEASE / 2)
                stall(release);
            m_store.write(release, file, m_name);
            pause(between(8, 28));
        }
        m_store.publish(release);
        const bool whole = m_store.isWhole(release, m_name) && m_store.current() == release;
        say(whole ? Word::deployed : Word::spoiled, release);
    }

    /// Long enough to be killed on a busy machine too.
    static void stall(int release)
    {
        say(Word::stall, release);
        pause(20 * 1000);
        throw std::runtime_error("should have been killed");
    }

    const std::string m_name;
    ReleaseStore m_store;
    std::minstd_rand m_random;
    zvDirectoryExclusiveLock m_lock;
};

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

int run(const std::string& directory, const std::string& name, int releases, int stallAt)
{
    Deployer deployer(directory, name);
    say(Word::ready);
    if (!waitForGo())
        return 1;
    for (int i = 1; i <= releases; ++i)
        deployer.turn(i == stallAt);
    say(Word::done);
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::cerr << "usage: deploy_worker DIRECTORY NAME RELEASES STALL_AT\n";
        return 2;
    }
    try {
        return run(argv[1], argv[2], std::atoi(argv[3]), std::atoi(argv[4]));
    } catch (const std::exception& error) {
        std::cerr << argv[2] << ": " << error.what() << std::endl;
        return 1;
    }
}
