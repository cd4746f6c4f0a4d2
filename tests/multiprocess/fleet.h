#pragma once

#include "tests/support/process.h"

#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// How to start a contender: the command before its arguments.
typedef std::vector<std::string> Launcher;

/// The contenders that this test run has, one per kind of machine: the
/// program of this build, and in the mixed run the Windows one under Wine too.
/// A fleet takes them in turn.
std::vector<Launcher> launchers();

/// A running lock_worker, whose output is read as it comes.
class Worker
{
public:
    Worker(const Launcher& launcher, const std::string& directory, int id, int holds, int holdMsec);
    ~Worker();

    void waitReady();
    void go();
    /// Waits until it has said "held" this many times; false when it ended
    /// before.
    bool waitHeld(int times);
    bool waitWaiting(int times);
    void kill();

    /// Waits for the end; 0 when all was well.
    int finish();

    int held() const { return m_held; }
    bool running() const { return !m_ended; }

private:
    void read();
    bool waitFor(const std::atomic<int>& counter, int times);

    Process m_process;
    std::atomic<int> m_ready;
    std::atomic<int> m_waiting;
    std::atomic<int> m_held;
    std::atomic<bool> m_ended;
    boost::mutex m_mutex;
    boost::condition_variable m_changed;
    boost::thread m_reader;
};

/// Several contenders for one directory.
class Fleet
{
public:
    Fleet(const std::string& directory, int size, int holds, int holdMsec);

    Worker& operator[](int index) { return *m_workers[index]; }
    const Worker& worker(int index) const { return *m_workers[index]; }
    int size() const { return static_cast<int>(m_workers.size()); }

    void waitReady();
    void go();
    /// Holds of all together.
    int held() const;

private:
    std::vector<std::unique_ptr<Worker>> m_workers;
};

}  // namespace test
}  // namespace zorvel
