#pragma once

#include "tests/support/seam_faults.h"

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

/// What the library is put through while calls of the seam fail.
namespace zorvel {
namespace test {
namespace seam {

using seam_faults::Fault;
using seam_faults::Function;

/// What failed in a run: nothing, one call or all of one function, or, when it
/// was something below the seam, also several functions.
typedef std::vector<Fault> Faults;

bool contains(const Faults& faults, Function function);

/// One run of a scenario: it is made on a healthy system, acts on one that
/// fails, and is then looked at on a healthy one. What it leaves behind when it
/// is gone is a leak.
class Run
{
public:
    virtual ~Run();

    /// What the caller of the library sees, in words: the results, or the name
    /// of the exception.
    virtual std::string act() = 0;

    /// What must hold whatever failed, given what the caller saw.
    virtual void check(const std::string& ending, const Faults& faults) = 0;
};

enum class Persistence
{
    once,
    ever,
    both,
};

/// How a scenario may end when a function fails. Lists are separated by blanks.
struct Rule
{
    Function function;
    const char* answers;  ///< names of answers; empty: all of them
    Persistence persistence;
    const char* endings;
};

typedef std::vector<Rule> Rules;

/// First those that say more, then the others.
Rules operator+(const Rules& special, const Rules& general);

struct Scenario
{
    const char* name;  ///< in identifier's letters
    std::function<std::unique_ptr<Run>()> prepare;
    /// How it ends when nothing fails, and where no rule says otherwise.
    const char* ending;
    /// The first that fits counts.
    Rules rules;
    /// So many of a function's calls fail in turn, the last one included.
    std::size_t calls = 1000;
    /// How it may also end when several functions fail, because something below
    /// them does.
    const char* together = "";
};

typedef std::vector<Scenario> Scenarios;

/// The endings that the rules state for a fault, separated by blanks.
std::string endingsWith(const Scenario& scenario, const Fault& fault);

typedef std::vector<std::string> Words;

Words wordsOf(const std::string& text);
bool contains(const Words& words, const std::string& word);

/// Those that ZORVEL_FAULT lets run.
Scenarios wantedOf(const Scenarios& scenarios);

/// The value of a variable of the environment, or the empty text.
std::string setting(const char* name);

void PrintTo(const Scenario& scenario, std::ostream* stream);

Scenarios exclusiveScenarios();
Scenarios readWriteScenarios();
Scenarios downgradeScenarios();
Scenarios removalScenarios();
Scenarios creationScenarios();
Scenarios walkScenarios();
Scenarios queryScenarios();
Scenarios textScenarios();
Scenarios semaphoreScenarios();
Scenarios moduleScenarios();
Scenarios temporaryNameScenarios();

/// The name of the exception that leaves a call, or what the call gives.
std::string endingOf(const std::function<std::string()>& call);

const char* textOf(bool value);

/// A run in which listings do not say what their entries are.
template <class RunWithKinds>
class WithoutKinds : public RunWithKinds
{
    const seam_faults::HiddenKinds m_hidden;
};

/// Makes runs of a class from a default constructor.
template <class R>
std::unique_ptr<Run> make()
{
    return std::unique_ptr<Run>(new R);
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
