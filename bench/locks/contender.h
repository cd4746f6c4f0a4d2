#pragma once

#include <functional>
#include <string>
#include <vector>

/// What every program of this folder has in common, whatever lock it uses. The programs in `peers` do the same in their
/// own languages.
namespace zorvel {
namespace bench {

/// A lock as its user sees it. An acquire that gave up without the lock returns false and is made again.
struct Lock
{
    std::function<bool()> acquire;
    std::function<void()> release;
    /// Seconds of processor time that this process has used, those of programs that it has run included.
    std::function<double()> processorTime;
    /// Where it is set: what lies between two cycles and is not measured.
    std::function<void()> betweenCycles = nullptr;
};

/// The processor time of this process alone.
double ownProcessorTime();

/// Acquires and releases so many times and prints how long each time took, in nanoseconds, one line for each.
int printCycles(const Lock& lock, int count);

/// Says "ready SECONDS" (the processor time of the start), reads when to begin and when to end (nanoseconds of the
/// monotonic clock), wants the lock all that time and holds it so long each time. The log gets a line for each hold:
/// when it was wanted, when it was there, when its release began and when that ended. The last word is "done SECONDS".
int contend(const Lock& lock, const std::string& log, int holdMsec);

/// Carries out "cycles COUNT" or "contend LOG HOLD_MS", the last words of a command line.
int carryOut(const Lock& lock, const std::vector<std::string>& order);

/// The words of a command line behind the program's name.
std::vector<std::string> wordsOf(int count, char** words);

}  // namespace bench
}  // namespace zorvel
