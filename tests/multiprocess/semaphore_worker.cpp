/// A user of a semaphore, as a program of its own on the shared library. It
/// says on its output what it does, one word first, and is told what to do on
/// its input.
///
///   semaphore_worker obey NAME
///
/// does what each line says: "open", "acquire", "try", "timed" (one second),
/// "release", "close"; and answers "yes" or "no". It says "waiting" before an
/// acquire.
///
///   semaphore_worker guarded|unguarded NAME DIRECTORY HOLDS
///
/// says "ready", waits for a line, goes HOLDS times inside, with the semaphore
/// or without one, and ends with "done". Where somebody else is inside it says
/// "collision".
///
///   semaphore_worker roam NAME DIRECTORY SEED
///
/// says "ready", waits for a line and goes inside, with the semaphore, until it
/// finds "stop" in the directory; then it says "parked" and how often it was
/// inside, and waits for a line before it goes on. Now and then it closes the
/// semaphore and opens it again. Where it cannot release it says "unreleased".

#include <zorvel/ipc.h>

#include <boost/interprocess/sync/file_lock.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

typedef std::unique_ptr<zvSemaphoreIPC> Semaphore;

const int oneSecond = 1;

void say(const std::string& line)
{
    std::cout << line << std::endl;
}

bool listen()
{
    std::string line;
    return static_cast<bool>(std::getline(std::cin, line));
}

Semaphore opened(const std::string& name)
{
    Semaphore semaphore(new zvSemaphoreIPC(name, oneSecond, false));
    if (!semaphore->Open())
        throw std::runtime_error("the semaphore cannot be opened");
    return semaphore;
}

/// Shows who is inside: a lock on a file, which goes with the process that has it, and a number in another file that is
/// counted up without any other protection.
class Inside
{
public:
    /// Before the semaphore is opened: a system that ends a process closes what it opened first, and whoever is let in
    /// by its death must not find the lock there.
    explicit Inside(const std::filesystem::path& directory)
        : m_mark(existing(directory / "inside").string().c_str()), m_counter(directory / "counter")
    {
    }

    void visit()
    {
        if (!m_mark.try_lock()) {
            say("collision");
            return;
        }
        const long before = count();
        std::this_thread::yield();
        setCount(before + 1);
        m_mark.unlock();
    }

private:
    static const std::filesystem::path& existing(const std::filesystem::path& file)
    {
        std::ofstream(file, std::ios::app);
        return file;
    }
    long count() const
    {
        long value = 0;
        std::ifstream(m_counter) >> value;
        return value;
    }
    void setCount(long value) const { std::ofstream(m_counter) << value; }

    boost::interprocess::file_lock m_mark;
    const std::filesystem::path m_counter;
};

bool obey(const std::string& order, Semaphore& semaphore, const std::string& name)
{
    if (order == "open") {
        semaphore.reset(new zvSemaphoreIPC(name, oneSecond, false));
        return semaphore->Open();
    }
    if (order == "close") {
        semaphore.reset();
        return true;
    }
    if (order == "try")
        return semaphore->TryAcquire();
    if (order == "release")
        return semaphore->Release();
    say("waiting");
    return semaphore->Acquire(order == "timed");
}

int obeyAll(const std::string& name)
{
    Semaphore semaphore;
    for (std::string order; std::getline(std::cin, order);)
        say(obey(order, semaphore, name) ? "yes" : "no");
    return 0;
}

int goInside(bool guarded, const std::string& name, Inside& inside, int holds)
{
    const Semaphore semaphore = opened(name);
    say("ready");
    listen();
    for (int i = 0; i < holds; ++i) {
        if (guarded && !semaphore->Acquire(false))
            return 3;
        inside.visit();
        if (guarded && !semaphore->Release())
            return 3;
    }
    say("done");
    return 0;
}

/// Waits have a limit, so that one whose token was lost with a killed process
/// comes back to see "stop". Whether it was inside.
bool roamOnce(zvSemaphoreIPC& semaphore, Inside& inside)
{
    if (!semaphore.Acquire(true))
        return false;
    inside.visit();
    if (!semaphore.Release())
        say("unreleased");
    return true;
}

int roam(const std::string& name, const std::filesystem::path& directory, unsigned seed)
{
    Inside inside(directory);
    std::mt19937 random(seed);
    Semaphore semaphore = opened(name);
    say("ready");
    while (listen()) {
        int visits = 0;
        while (!std::filesystem::exists(directory / "stop")) {
            visits += roamOnce(*semaphore, inside);
            if (random() % 8 == 0) {
                semaphore.reset();
                semaphore = opened(name);
            }
        }
        say("parked " + std::to_string(visits));
    }
    return 0;
}

int run(int count, char** arguments)
{
    const std::string role = count > 2 ? arguments[1] : "";
    if (role == "obey")
        return obeyAll(arguments[2]);
    if (count == 5 && (role == "guarded" || role == "unguarded")) {
        Inside inside(arguments[3]);
        return goInside(role == "guarded", arguments[2], inside, std::atoi(arguments[4]));
    }
    if (count == 5 && role == "roam")
        return roam(arguments[2], arguments[3], static_cast<unsigned>(std::atoi(arguments[4])));
    std::cerr << "usage: semaphore_worker obey|guarded|unguarded|roam NAME ...\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
