#include "bench/locks/contender.h"

#include <chrono>
#include <ctime>
#include <fstream>
#include <iostream>
#include <thread>

namespace zorvel {
namespace bench {

namespace {

typedef std::chrono::steady_clock Clock;

long long nowNsec()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
}

void sleepUntil(long long nsec)
{
    std::this_thread::sleep_until(Clock::time_point(std::chrono::nanoseconds(nsec)));
}

void acquireAtLast(const Lock& lock)
{
    while (!lock.acquire()) {
    }
}

/// False when the end came before the lock.
bool acquireBefore(const Lock& lock, long long end)
{
    while (!lock.acquire()) {
        if (nowNsec() >= end)
            return false;
    }
    return true;
}

void holdAgainAndAgain(const Lock& lock, std::ostream& log, std::chrono::milliseconds hold, long long end)
{
    for (long long wanted = nowNsec(); wanted < end; wanted = nowNsec()) {
        if (!acquireBefore(lock, end))
            return;
        const long long acquired = nowNsec();
        std::this_thread::sleep_for(hold);
        const long long releasing = nowNsec();
        lock.release();
        log << wanted << ' ' << acquired << ' ' << releasing << ' ' << nowNsec() << std::endl;
    }
}

}  // namespace

double ownProcessorTime()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

int printCycles(const Lock& lock, int count)
{
    std::vector<long long> durations;
    for (int i = 0; i < count; ++i) {
        if (lock.betweenCycles)
            lock.betweenCycles();
        const long long begin = nowNsec();
        acquireAtLast(lock);
        lock.release();
        durations.push_back(nowNsec() - begin);
    }
    for (const long long duration : durations)
        std::cout << duration << '\n';
    return std::cout.flush() ? 0 : 1;
}

int contend(const Lock& lock, const std::string& log, int holdMsec)
{
    std::ofstream lines(log);
    std::cout << "ready " << lock.processorTime() << std::endl;
    long long begin = 0;
    long long end = 0;
    if (!lines || !(std::cin >> begin >> end))
        return 1;
    sleepUntil(begin);
    holdAgainAndAgain(lock, lines, std::chrono::milliseconds(holdMsec), end);
    std::cout << "done " << lock.processorTime() << std::endl;
    return 0;
}

int carryOut(const Lock& lock, const std::vector<std::string>& order)
{
    if (order.size() == 2 && order[0] == "cycles")
        return printCycles(lock, std::stoi(order[1]));
    if (order.size() == 3 && order[0] == "contend")
        return contend(lock, order[1], std::stoi(order[2]));
    std::cerr << "the order is: cycles COUNT, or contend LOG HOLD_MS" << std::endl;
    return 2;
}

std::vector<std::string> wordsOf(int count, char** words)
{
    return std::vector<std::string>(words + 1, words + count);
}

}  // namespace bench
}  // namespace zorvel
