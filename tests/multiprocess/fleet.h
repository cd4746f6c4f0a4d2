#pragma once

#include "tests/multiprocess/holds.h"
#include "tests/support/process.h"

#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <set>
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

/// What one worker does: its role (see contender.h), how often it takes the
/// directory, and how long it stays inside and, on average, outside.
struct Part
{
    std::string role;
    int holds;
    int holdMsec;
    int pauseMsec;
};

/// A line that sorts by the number of the mark that comes next.
std::string storyLine(int number, int worker, const std::string& what);

/// A running lock_worker, whose output is read as it comes.
class Worker
{
public:
    /// `numbers` gives the marks that it asks for their numbers.
    Worker(const Launcher& launcher, const std::string& directory, int id, const Part& part, int victim,
           std::atomic<int>& numbers);
    ~Worker();

    void waitReady();
    void go();
    /// Waits until it has said "held" this many times; false when it ended
    /// before.
    bool waitHeld(int times) { return waitSaid("held", times); }
    bool waitWaiting(int times) { return waitSaid("waiting", times); }
    /// The same for any first word of a line.
    bool waitSaid(const std::string& word, int times);
    /// A line of its input.
    void tell(const std::string& line) { m_process.writeLine(line); }
    void kill();
    /// Stops it where it is, and lets it go on, as Ctrl-Z does.
    void pause() { m_process.pause(); }
    void resume() { m_process.resume(); }

    /// Waits for the end; 0 when all was well.
    int finish();

    int held() const { return said("held"); }
    int said(const std::string& word) const;
    bool running() const { return !m_ended; }
    int id() const { return m_id; }

    /// In a storm: its lock files, up to what it has said.
    std::set<std::string> owned() const;
    /// Once it has ended: what it said about them, with the numbers of marks.
    const std::vector<std::string>& claims() const { return m_claims; }

    /// Once it has ended: its marks, and what it found wrong.
    const std::vector<Mark>& marks() const { return m_marks; }
    const std::vector<std::string>& complaints() const { return m_complaints; }

private:
    void read();
    void note(const std::string& line);
    void answer(const std::string& event);
    void noteClaim(const std::string& how, const std::string& name);

    const int m_id;
    std::atomic<int>& m_numbers;
    Process m_process;
    std::map<std::string, int> m_said;
    std::vector<Mark> m_marks;
    std::vector<std::string> m_complaints;
    std::set<std::string> m_owned;
    std::vector<std::string> m_claims;
    std::atomic<bool> m_ended;
    mutable boost::mutex m_mutex;
    boost::condition_variable m_changed;
    boost::thread m_reader;
};

/// Several contenders for one directory.
class Fleet
{
public:
    /// For the exclusive lock.
    Fleet(const std::string& directory, int size, int holds, int holdMsec);
    /// One worker for each part. `victim` is the one that is going to be
    /// killed, whose traces the others are prepared for.
    Fleet(const std::string& directory, const std::vector<Part>& parts, int victim = -1);
    /// The same, by these instead of launchers().
    Fleet(const std::vector<Launcher>& kinds, const std::string& directory, const std::vector<Part>& parts,
          int victim = -1);

    Worker& operator[](int index) { return *m_workers[index]; }
    const Worker& worker(int index) const { return *m_workers[index]; }
    int size() const { return static_cast<int>(m_workers.size()); }

    void waitReady();
    void go();
    /// Holds of all together.
    int held() const;
    /// How often all together have said a word.
    int said(const std::string& word) const;

    /// Of all together, once they have ended.
    std::vector<Mark> marks() const;
    std::vector<std::string> complaints() const;

private:
    std::atomic<int> m_numbers;
    std::vector<std::unique_ptr<Worker>> m_workers;
};

}  // namespace test
}  // namespace zorvel
