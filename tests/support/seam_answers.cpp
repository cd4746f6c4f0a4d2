#include "tests/support/seam_faults.h"

#include "platform/files.h"
#include "platform/semaphore.h"

#include <cerrno>

namespace zorvel {
namespace test {
namespace seam_faults {

namespace {

typedef std::vector<Answer> Answers;

const Answer noMemory = {"bad_alloc", 0, Effect::noMemory};

Answer refused(const char* name, long result)
{
    return {name, result, Effect::notDone};
}

/// The names of these answers end in "-done".
Answer lostReply(const char* name, long result)
{
    return {name, result, Effect::done};
}

const Answer denied = refused("EACCES", EACCES);
const Answer missing = refused("ENOENT", ENOENT);
const Answer broken = refused("EIO", EIO);
const Answer used = refused("EMFILE", EMFILE);
const Answer full = refused("ENOSPC", ENOSPC);
const Answer readOnly = refused("EROFS", EROFS);
const Answer forbidden = refused("EPERM", EPERM);
const Answer busy = refused("EBUSY", EBUSY);
#ifdef ESTALE
const Answer stale = refused("ESTALE", ESTALE);
#else
const Answer stale = refused("EINVAL", EINVAL);
#endif

Answer kind(const char* name, platform::EntryKind value)
{
    return refused(name, static_cast<long>(value));
}

const Answer isNone = kind("none", platform::EntryKind::none);
const Answer isFile = kind("file", platform::EntryKind::file);
const Answer isDirectory = kind("directory", platform::EntryKind::directory);
const Answer isLink = kind("link", platform::EntryKind::directoryLink);
const Answer isFalse = refused("false", 0);
const Answer isNull = refused("null", 0);

std::vector<Answers> makeAnswers()
{
    std::vector<Answers> all(functionCount);
    all[sleepFor] = {{"interrupted", 0, Effect::interrupted}};
    all[entryKind] = {isNone, isFile, isDirectory, isLink};
    all[fileStatus] = {missing, denied, broken, stale};
    all[modificationTime] = {missing, denied, broken, busy};
    all[modificationTimeAtServer] = {missing, denied, broken};
    all[changeMode] = {missing, denied, broken, readOnly, forbidden, lostReply("EIO-done", EIO)};
    all[availableSpace] = {isFalse};
    all[makeDirectory] = {
        refused("EEXIST", EEXIST), missing, denied, broken, full, readOnly, stale, lostReply("EEXIST-done", EEXIST),
        lostReply("EIO-done", EIO)};
    all[removeFile] = {missing,
                       denied,
                       busy,
                       broken,
                       readOnly,
                       forbidden,
                       stale,
                       lostReply("ENOENT-done", ENOENT),
                       lostReply("EIO-done", EIO)};
    all[openFile] = {refused("EEXIST", EEXIST),
                     missing,
                     denied,
                     broken,
                     used,
                     full,
                     readOnly,
                     forbidden,
                     stale,
                     lostReply("EEXIST-done", EEXIST),
                     lostReply("EIO-done", EIO)};
    all[writeFile] = {broken, full, stale, lostReply("EIO-done", EIO)};
    all[flushFile] = {broken, full, lostReply("EIO-done", EIO)};
    all[openSearch] = {missing, refused("ENOTDIR", ENOTDIR), denied, broken, used, stale, noMemory};
    all[openDirectory] = {missing, refused("ENOTDIR", ENOTDIR), denied, broken, used, stale, noMemory};
    all[sizeOfFound] = {missing, denied, broken, stale};
    all[nextOfSearch] = {broken, stale};
    all[codeOfSearch] = {broken, stale};
    all[openRemoval] = {missing, refused("ENOTDIR", ENOTDIR), denied, broken, used, stale, noMemory};
    all[openChild] = {missing, refused("ENOTDIR", ENOTDIR), denied, broken, used, stale, noMemory};
    all[listEntries] = {denied, broken, used, stale, lostReply("EIO-done", EIO), noMemory};
    all[matchEntries] = {missing, denied, broken, used, stale, lostReply("EIO-done", EIO), noMemory};
    all[kindOfEntry] = {isNone, isFile, isDirectory};
    all[removeEntry] = {missing,
                        denied,
                        busy,
                        broken,
                        readOnly,
                        forbidden,
                        stale,
                        lostReply("ENOENT-done", ENOENT),
                        lostReply("EIO-done", EIO)};
    all[removeEmptyDirectory] = {missing,
                                 denied,
                                 busy,
                                 broken,
                                 refused("ENOTEMPTY", ENOTEMPTY),
                                 stale,
                                 lostReply("ENOENT-done", ENOENT),
                                 lostReply("EIO-done", EIO)};
    all[allowRemovalOf] = {isFalse, refused("true", 1)};
    all[allowRemovalsInside] = {refused("nothing", 0)};
    all[restorePermission] = {refused("nothing", 0)};
    all[resume] = {isFalse};
    all[userLanguage] = {refused("nothing", 0), noMemory};
    all[fromCodePage932] = {isFalse, noMemory};
    all[loadLibrary] = {isNull};
    all[findSymbol] = {isNull};
    all[unloadLibrary] = {lostReply("false-done", 0)};
    all[listModules] = {isFalse};
    all[moduleFileName] = {refused("0", 0)};
    all[ownModuleFileName] = {refused("0", 0)};
    all[canonicalize] = {isFalse};
    all[fullPath] = {isFalse};
    all[createSemaphore] = {isNull};
    all[waitForSemaphore] = {refused("failed", static_cast<long>(platform::waitFailed)),
                             refused("abandoned", static_cast<long>(platform::waitAbandoned)),
                             refused("timedOut", static_cast<long>(platform::waitTimedOut)), refused("unknown", 7)};
    all[releaseSemaphore] = {isFalse, lostReply("false-done", 0)};
    all[closeSemaphore] = {lostReply("0-done", 0), lostReply("-1-done", -1)};
    all[lastError] = {refused("0", 0), refused("unknown", 123456)};
    all[systemErrorText] = {refused("nothing", 0), noMemory};
    all[setTimer] = {{"thread_resource_error", 0, Effect::noThread}, noMemory};
    return all;
}

const char* const names[functionCount] = {"sleepFor",
                                          "entryKind",
                                          "fileStatus",
                                          "modificationTime",
                                          "modificationTimeAtServer",
                                          "changeMode",
                                          "availableSpace",
                                          "makeDirectory",
                                          "removeFile",
                                          "openFile",
                                          "writeFile",
                                          "flushFile",
                                          "openSearch",
                                          "openDirectory",
                                          "nextOfSearch",
                                          "codeOfSearch",
                                          "sizeOfFound",
                                          "openRemoval",
                                          "openChild",
                                          "listEntries",
                                          "matchEntries",
                                          "kindOfEntry",
                                          "removeEntry",
                                          "removeEmptyDirectory",
                                          "allowRemovalOf",
                                          "allowRemovalsInside",
                                          "restorePermission",
                                          "resume",
                                          "userLanguage",
                                          "fromCodePage932",
                                          "loadLibrary",
                                          "findSymbol",
                                          "unloadLibrary",
                                          "listModules",
                                          "moduleFileName",
                                          "ownModuleFileName",
                                          "canonicalize",
                                          "fullPath",
                                          "createSemaphore",
                                          "waitForSemaphore",
                                          "releaseSemaphore",
                                          "closeSemaphore",
                                          "lastError",
                                          "systemErrorText",
                                          "setTimer"};

}  // namespace

const char* nameOf(Function function)
{
    return names[function];
}

const std::vector<Answer>& answersOf(Function function)
{
    static const std::vector<Answers> all = makeAnswers();
    return all[function];
}

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel
