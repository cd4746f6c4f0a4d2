/// One contender for a directory, as a program of its own on the shared
/// library:
///
///   lock_worker ROLE DIRECTORY ID HOLDS HOLD_MSEC PAUSE_MSEC VICTIM
///
/// It says "ready", waits for a line of input, takes the directory HOLDS times
/// in its role (see contender.h) and says "waiting", "held" and "free" (readers
/// and writers also "inside", with their mark there) as it goes, then "done".
/// Numbers of milliseconds are what it stays inside and, on average, outside.
/// VICTIM is the ID of a worker that the test kills, or -1.

#include "tests/multiprocess/contender.h"

#include <cstdlib>
#include <iostream>
#include <random>
#include <stdexcept>
#include <thread>

namespace zorvel {
namespace test {

void say(const std::string& line)
{
    std::cout << line << std::endl;
}

void askMark(const std::string& event)
{
    say("mark? " + event);
    std::string answer;
    if (!std::getline(std::cin, answer))
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
        throw std::invalid_argument("no such role: " + task.role);
    return contender;
}

}  // namespace test
}  // namespace zorvel

namespace {

using namespace zorvel::test;

int run(const Task& task, int holds)
{
    const std::unique_ptr<Contender> contender = makeContender(task);
    std::mt19937 random(task.id);
    say("ready");
    std::string go;
    std::getline(std::cin, go);
    for (int i = 0; i < holds; ++i) {
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
    return task;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 8) {
        std::cerr << "usage: lock_worker ROLE DIRECTORY ID HOLDS HOLD_MSEC PAUSE_MSEC VICTIM\n";
        return 2;
    }
    try {
        return run(taskOf(argv), std::atoi(argv[4]));
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
