#pragma once

#include <zorvel/lockfile.h>

#include <boost/shared_ptr.hpp>

#include <chrono>
#include <memory>
#include <string>

/// The parts that a lock_worker can play. Each says on its output what it does
/// as it goes, one word first; everything else is left to those who listen.
namespace zorvel {
namespace test {

/// The status of a worker that was not given its lock.
const int notAcquired = 4;
/// The status of a worker that found somebody else inside, or a release that
/// was not whole. It has said "wrong:" and what it saw.
const int wrongFound = 3;

struct Task
{
    /// "exclusive": takes the exclusive lock. "reader", "writer", "downgrader"
    /// (a writer that becomes a reader of its own release): the read-write
    /// lock. "unlocked-reader", "unlocked-writer": take no lock at all.
    /// "asking-exclusive", "asking-reader", "asking-writer" and
    /// "asking-downgrader" take the same locks on a share, where a look can be
    /// old: nobody shows there that it is inside, and whoever listens numbers
    /// the marks (see askMark). "storm-" before one of the first four: in a
    /// storm (see storm.h). "obedient-exclusive", "obedient-reader" and
    /// "obedient-writer": do what they are told (see obedient_contender.cpp).
    std::string role;
    std::string directory;
    int id;
    std::chrono::milliseconds hold;
    /// Between two holds on average.
    std::chrono::milliseconds pause;
    /// Whose release may stay half written because it is going to be killed;
    /// -1 for nobody, `anybody` where all are.
    int victim;
    /// What it locks through.
    boost::shared_ptr<zvAbstractFS> fs;
    /// Whether whoever listens numbers the marks of the roles that are not
    /// "asking" as well; an exclusive hold has marks only then.
    bool asks;
};

const int anybody = -2;

class Contender
{
public:
    virtual ~Contender() {}

    /// Takes the directory once and gives it back; 0, or the exit status of a
    /// worker that cannot go on.
    virtual int hold() = 0;

    /// 0, or what the worker ends with in spite of its having gone on.
    virtual int verdict() const { return 0; }
};

/// From any thread.
void say(const std::string& line);

/// Says "mark? EVENT" and waits for the number that the listener gives the
/// mark. What a worker did before it asked came before what another did after
/// it was answered, so the numbers of one listener order the events of several
/// machines without a clock. Throws std::runtime_error when nobody answers any
/// more.
void askMark(const std::string& event);

/// The next line of the input; waits. False when no more is coming.
bool hear(std::string& line);

/// Throws std::invalid_argument for a role that does not exist.
std::unique_ptr<Contender> makeContender(const Task& task);

std::unique_ptr<Contender> makeExclusiveContender(const Task& task);
/// Empty for another role.
std::unique_ptr<Contender> makeReadWriteContender(const Task& task);
/// Empty for another role.
std::unique_ptr<Contender> makeAskingContender(const Task& task);
/// Empty for another role.
std::unique_ptr<Contender> makeObedientContender(const Task& task);

}  // namespace test
}  // namespace zorvel
