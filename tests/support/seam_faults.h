#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

/// The functions of the seam fail when a test wants them to. The library's
/// calls of them come here first: the program is made with
/// zorvel_test_with_seam_faults(), which also gives it the fake clock.
///
/// Only calls of the thread that called begin() count and fail. For that thread
/// a pause moves the wall clock and takes no time; timers have real threads,
/// which sleep until they are cancelled and call nothing by themselves.
namespace zorvel {
namespace test {
namespace seam_faults {

enum Function
{
    sleepFor,
    entryKind,
    fileStatus,
    modificationTime,
    changeMode,
    availableSpace,
    makeDirectory,
    removeFile,
    openFile,
    writeFile,
    openSearch,
    nextOfSearch,
    codeOfSearch,
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

/// The calling thread's calls are counted and, with a fault, fail.
void begin(const Fault* fault);

/// They do not any more; how often each function was called, and how many of
/// the calls failed.
Counts end(std::size_t& failures);

/// For the functions that stand in front of the seam's: the answer that this
/// call is to fail with, or null.
const Answer* next(Function function);

/// Throws what the effect of an answer asks for.
void throwIfAsked(const Answer& answer);

/// Timers that were set and not cancelled, and a call of each by the calling
/// thread. An exception ends the timer and is gone.
std::size_t runningTimers();
void fireTimers();

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel
