#pragma once

#include <array>
#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// The functions of the seam fail when a test wants them to. The library's
/// calls of them come here first. There are two ways to ask for it:
///
/// begin() and end(), around a whole scenario: only calls of the thread that
/// called begin() count and fail. The program is made with
/// zorvel_test_with_seam_faults(), which also gives it the fake clock. For that
/// thread a pause moves the wall clock and takes no time; timers have real
/// threads, which sleep until they are cancelled and call nothing by themselves.
///
/// failNext() and failAlways(), around single calls: those of all threads. For
/// them the files are enough (zorvel_test_with_file_faults()), and clock and
/// timers are whatever the program has.
namespace zorvel {
namespace test {
namespace seam_faults {

enum Function
{
    sleepFor,
    entryKind,
    fileStatus,
    modificationTime,
    modificationTimeAtServer,
    changeMode,
    availableSpace,
    makeDirectory,
    removeFile,
    openFile,
    writeFile,
    flushFile,
    openSearch,
    openDirectory,
    nextOfSearch,
    codeOfSearch,
    sizeOfFound,
    openRemoval,
    openChild,
    listEntries,
    matchEntries,
    kindOfEntry,
    removeEntry,
    removeEmptyDirectory,
    allowRemovalOf,
    allowRemovalsInside,
    restorePermission,
    resume,
    userLanguage,
    fromCodePage932,
    loadLibrary,
    findSymbol,
    unloadLibrary,
    listModules,
    moduleFileName,
    ownModuleFileName,
    canonicalize,
    fullPath,
    createSemaphore,
    waitForSemaphore,
    releaseSemaphore,
    closeSemaphore,
    lastError,
    systemErrorText,
    setTimer,
    functionCount
};

/// What becomes of the call that fails.
enum class Effect
{
    notDone,      ///< nothing is done
    done,         ///< all of it is done, and a failure is reported: a lost reply
    noMemory,     ///< std::bad_alloc leaves, nothing is done
    interrupted,  ///< boost::thread_interrupted leaves
    noThread,     ///< boost::thread_resource_error leaves
};

/// One way in which a function fails: its result, and what has happened.
struct Answer
{
    const char* name;
    long result;
    Effect effect;
};

const char* nameOf(Function function);

/// All the ways in which a function can fail.
const std::vector<Answer>& answersOf(Function function);

/// The call number `call` (from 1) of a function fails, once or with all that
/// follow.
struct Fault
{
    Function function;
    std::size_t call;
    bool forEver;
    Answer answer;
};

/// "openFile 3 EIO once".
std::string textOf(const Fault& fault);

/// "For ever" is this many failures, more than any wait of a few seconds makes.
/// What has no limit at all then comes to its end.
const std::size_t endOfForEver = 5000;

typedef std::array<std::size_t, functionCount> Counts;

/// Calls in which something below the seam failed (see watchBelow()), with what
/// the seam gave for it: a code, a kind, or whether there was a result at all.
typedef std::set<std::pair<Function, long>> Hits;

struct Record
{
    Counts counts;         ///< how often each function was called
    std::size_t failures;  ///< how many of the calls failed
    Hits hits;
};

/// The calling thread's calls are counted and, with a fault, fail.
void begin(const Fault* fault);

/// They do not any more.
Record end();

/// From now on calls also ask how often something below the seam has failed by
/// then; null: they do not.
void watchBelow(std::size_t (*failures)());

/// Lets the next `times` calls of a function fail with a code of the runtime;
/// nothing is done by them.
void failNext(Function function, int code, std::size_t times);

/// Every call fails from now on.
void failAlways(Function function, int code);

/// No failure is asked for any more, and nothing has been called.
void reset();

/// Calls since reset(), those that failed too.
std::size_t calls(Function function);

/// Calls reset() at both ends of a test.
class Scope
{
public:
    Scope() { reset(); }
    ~Scope() { reset(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

/// For the functions that stand in front of the seam's: the answer that this
/// call is to fail with, or null.
const Answer* next(Function function);

/// While one lives, the seam's functions call each other: those calls are not
/// the library's, and neither count nor fail.
class Inside
{
public:
    Inside();
    ~Inside();
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
};

/// Throws what the effect of an answer asks for.
void throwIfAsked(const Answer& answer);

/// The failures below the seam so far, and a call of a function in which there
/// were more of them than `before`.
std::size_t failuresBelow();
void noteIfHit(Function function, std::size_t before, long result);

/// While one lives, listings do not say what their entries are, as those of
/// some file systems do not.
class HiddenKinds
{
public:
    HiddenKinds();
    ~HiddenKinds();
    HiddenKinds(const HiddenKinds&) = delete;
    HiddenKinds& operator=(const HiddenKinds&) = delete;
};

bool areKindsHidden();

/// Timers that were set and not cancelled, and a call of each by the calling
/// thread. An exception ends the timer and is gone.
std::size_t runningTimers();
void fireTimers();

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel
