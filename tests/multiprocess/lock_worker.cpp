/// One contender for a directory, as a program of its own on the shared
/// library:
///
///   lock_worker ROLE DIRECTORY ID HOLDS HOLD_MSEC PAUSE_MSEC VICTIM
///
/// It says "ready", waits for a line of input, takes the directory HOLDS times
/// in its role (see contender.h) and says "waiting", "held" and "free" (readers
/// and writers also "inside", with their mark there; those that ask for their
/// marks "looked", when they have read the release) as it goes, then "done".
/// Numbers of milliseconds are what it stays inside and, on average, outside.
/// VICTIM is the ID of a worker that the test kills, or -1. In a storm it also
/// says which lock files are its own (see claiming_fs.h), and ends when it is
/// told "stop" too.

#include "tests/multiprocess/claiming_fs.h"
#include "tests/multiprocess/contender.h"
#include "tests/multiprocess/orders.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include <cstdlib>
#include <iostream>
#include <random>
#include <stdexcept>
#include <thread>

namespace zorvel {
namespace test {

namespace {

boost::mutex outputMutex;
/// In a storm only.
std::unique_ptr<Orders> orders;

}  // namespace

void say(const std::string& line)
{
    const boost::lock_guard<boost::mutex> lock(outputMutex);
    std::cout << line << std::endl;
}

bool hear(std::string& line)
{
    return orders ? orders->next(line) : static_cast<bool>(std::getline(std::cin, line));
}

void askMark(const std::string& event)
{
    say("mark? " + event);
    std::string answer;
    if (!hear(answer))
        throw std::runtime_error("nobody numbers the mark");
}

std::unique_ptr<Contender> makeContender(const Task& task)
{
    if (task.role == "exclusive")
        return makeExclusiveContender(task);
    std::unique_ptr<Contender> contender = makeReadWriteContender(task);
    if (!contender)
        contender = makeAskingContender(task);
    if (!contender)
        contender = makeObedientContender(task);
    if (!contender)
        throw std::invalid_argument("no such role: " + task.role);
    return contender;
}

}  // namespace test
}  // namespace zorvel

namespace {

using namespace zorvel::test;

const std::string stormPrefix = "storm-";

int run(const Task& task, int holds)
{
    const std::unique_ptr<Contender> contender = makeContender(task);
    std::mt19937 random(task.id);
    say("ready");
    std::string go;
    hear(go);
    for (int i = 0; i < holds && !(orders && orders->stopped()); ++i) {
        if (const int status = contender->hold())
            return status;
        if (task.pause.count() > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(random() % (2 * task.pause.count())));
    }
    say("done");
    return contender->verdict();
}

Task taskOf(char** arguments)
{
    Task task;
    task.role = arguments[1];
    task.directory = arguments[2];
    task.id = std::atoi(arguments[3]);
    task.hold = std::chrono::milliseconds(std::atoi(arguments[5]));
    task.pause = std::chrono::milliseconds(std::atoi(arguments[6]));
    task.victim = std::atoi(arguments[7]);
    task.fs = zvGetDefaultFSImp();
    task.asks = false;
    return task;
}

/// Nobody knows beforehand who is going to be killed.
Task inAStorm(Task task, const boost::shared_ptr<ClaimingFs>& fs)
{
    task.role.erase(0, stormPrefix.size());
    task.victim = anybody;
    task.fs = fs;
    task.asks = true;
    return task;
}

int runInAStorm(const Task& task, int holds)
{
    const boost::shared_ptr<ClaimingFs> fs = boost::make_shared<ClaimingFs>(task.fs);
    orders.reset(new Orders([fs] { fs->sync(); }));
    const int status = run(inAStorm(task, fs), holds);
    // Nothing is left to be done, and the input may stay open for long.
    if (!orders->stopped())
        std::_Exit(status);
    orders.reset();
    return status;
}

int run(char** arguments)
{
    const Task task = taskOf(arguments);
    const int holds = std::atoi(arguments[4]);
    return task.role.compare(0, stormPrefix.size(), stormPrefix) == 0 ? runInAStorm(task, holds) : run(task, holds);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 8) {
        std::cerr << "usage: lock_worker ROLE DIRECTORY ID HOLDS HOLD_MSEC PAUSE_MSEC VICTIM\n";
        return 2;
    }
    try {
        return run(argv);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        // Whoever may be reading the input is not waited for.
        std::_Exit(1);
    }
}
