#include "tests/faults/mount/mount_faults.h"

#include "platform/files.h"

#include <algorithm>
#include <cerrno>

namespace zorvel {
namespace test {
namespace fault_mount {

namespace {

using seam_faults::Effect;
using seam_faults::Function;
using seam_faults::Hits;
typedef Hits::value_type Hit;

typedef std::vector<Answer> Answers;

const Answer exists = {"EEXIST", EEXIST, false};
const Answer missing = {"ENOENT", ENOENT, false};
const Answer noDirectory = {"ENOTDIR", ENOTDIR, false};
const Answer notEmpty = {"ENOTEMPTY", ENOTEMPTY, false};
const Answer denied = {"EACCES", EACCES, false};
const Answer forbidden = {"EPERM", EPERM, false};
const Answer broken = {"EIO", EIO, false};
const Answer stale = {"ESTALE", ESTALE, false};
const Answer used = {"EMFILE", EMFILE, false};
const Answer full = {"ENOSPC", ENOSPC, false};
const Answer overQuota = {"EDQUOT", EDQUOT, false};
const Answer readOnly = {"EROFS", EROFS, false};
const Answer busy = {"EBUSY", EBUSY, false};
const Answer cutOff = {"ETIMEDOUT", ETIMEDOUT, false};
const Answer late = {"late", 0, false};
// The server repeats what it has done already (its answer is that of a second time), or the client only knows that it
// has no answer. The kernel itself repeats what ended with ESTALE.
const Answer existsDone = {"EEXIST-done", EEXIST, true};
const Answer missingDone = {"ENOENT-done", ENOENT, true};
const Answer brokenDone = {"EIO-done", EIO, true};
const Answer staleDone = {"ESTALE-done", ESTALE, true};

std::vector<Answers> makeAnswers()
{
    std::vector<Answers> all(operationCount);
    all[getattr] = {missing, denied, broken, stale, cutOff, late};
    all[readlink] = {missing, denied, broken, stale, late};
    all[mkdir] = {exists, missing, denied, broken,     full,       overQuota, readOnly,
                  stale,  cutOff,  late,   existsDone, brokenDone, staleDone};
    all[unlink] = {missing, denied, busy, broken,      readOnly,   forbidden,
                   stale,   cutOff, late, missingDone, brokenDone, staleDone};
    all[rmdir] = {missing, denied, busy, broken, notEmpty, stale, late, missingDone, brokenDone, staleDone};
    all[chmod] = {missing, denied, broken, readOnly, forbidden, late, brokenDone};
    all[open] = {missing, denied, broken, used, readOnly, forbidden, stale, cutOff, late};
    all[create] = {exists,    missing, denied, broken, used,       full,       overQuota, readOnly,
                   forbidden, stale,   cutOff, late,   existsDone, brokenDone, staleDone};
    all[write] = {broken, full, overQuota, stale, cutOff, late, brokenDone};
    all[flush] = {broken, full, overQuota, stale, late};
    all[fsync] = {broken, full, late};
    all[opendir] = {missing, noDirectory, denied, broken, used, stale, cutOff, late};
    all[readdir] = {denied, broken, stale, cutOff, late};
    all[statfs] = {denied, broken, stale, late};
    return all;
}

/// Whether a function gives a code of the runtime; the others give something or
/// nothing.
bool givesCode(Function function)
{
    switch (function) {
    case seam_faults::entryKind:
    case seam_faults::kindOfEntry:
    case seam_faults::availableSpace:
    case seam_faults::allowRemovalOf:
    case seam_faults::allowRemovalsInside:
    case seam_faults::restorePermission:
    case seam_faults::resume:
    case seam_faults::fullPath: return false;
    default: return true;
    }
}

bool hasFailed(Function function, long result)
{
    return givesCode(function) == (result != 0);
}

/// Functions that do not say whether they failed: those that give nothing, and
/// the opening of a directory, which may then be one that cannot be listed, or
/// not be recognised later.
bool isSilent(Function function)
{
    return function == seam_faults::allowRemovalsInside || function == seam_faults::restorePermission ||
           function == seam_faults::openChild || function == seam_faults::openRemoval;
}

/// A directory that could not be looked at may be taken for a file.
bool isDoubtfulKind(Function function, long result)
{
    return (function == seam_faults::entryKind || function == seam_faults::kindOfEntry) &&
           result == static_cast<long>(platform::EntryKind::file);
}

/// What a hit is as a fault: the result, or what it may hide.
bool isFault(const Hit& hit)
{
    return hasFailed(hit.first, hit.second) || isSilent(hit.first) || isDoubtfulKind(hit.first, hit.second);
}

long resultOf(const Hit& hit, int code)
{
    return isSilent(hit.first) && !hasFailed(hit.first, hit.second) ? code : hit.second;
}

seam_faults::Answer answerOf(Function function, long result, bool isDone)
{
    const Effect effect = isDone ? Effect::done : Effect::notDone;
    for (const seam_faults::Answer& answer : seam_faults::answersOf(function))
        if (answer.result == result && answer.effect == effect)
            return answer;
    for (const seam_faults::Answer& answer : seam_faults::answersOf(function))
        if (answer.result == result && answer.effect == Effect::notDone)
            return {answer.name, result, effect};
    // What nobody has a rule of its own for is like the general failure.
    return {isDone ? "EIO-done" : "EIO", result, effect};
}

void add(seam::Words& words, const std::string& more)
{
    for (const std::string& word : seam::wordsOf(more))
        if (!seam::contains(words, word))
            words.push_back(word);
}

}  // namespace

const std::vector<Answer>& answersOf(Operation operation)
{
    static const std::vector<Answers> all = makeAnswers();
    return all[operation];
}

std::string textOf(const Fault& fault)
{
    return std::string(operationNames[fault.operation]) + " " + std::to_string(fault.call) + " " + fault.answer.name +
           (fault.isForEver ? " ever" : " once");
}

seam::Faults faultsOfSeam(const Fault& fault, const Hits& hits)
{
    seam::Faults faults;
    for (const Hit& hit : hits) {
        if (fault.answer.code != 0 && isFault(hit))
            faults.push_back({hit.first, fault.call, fault.isForEver,
                              answerOf(hit.first, resultOf(hit, fault.answer.code), fault.answer.isDone)});
    }
    return faults;
}

seam::Words allowedEndings(const seam::Scenario& scenario, const Fault& fault, const Hits& hits)
{
    seam::Words allowed;
    const seam::Faults faults = faultsOfSeam(fault, hits);
    for (seam_faults::Fault each : faults) {
        add(allowed, seam::endingsWith(scenario, each));
        // Of a function's calls those fail that need the operation.
        each.forEver = false;
        add(allowed, seam::endingsWith(scenario, each));
    }
    const bool areAllFailures =
        std::all_of(hits.begin(), hits.end(), [](const Hit& hit) { return hasFailed(hit.first, hit.second); });
    if (faults.empty() || !areAllFailures)
        add(allowed, scenario.ending);
    if (faults.size() > 1)
        add(allowed, scenario.together);
    // Time that has run out is no error.
    if (fault.answer.code == 0)
        add(allowed, "false");
    return allowed;
}

}  // namespace fault_mount
}  // namespace test
}  // namespace zorvel
