#include "tests/unit/dirlock/scenarios.h"

#include <zorvel/errors.h>

#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

using boost::posix_time::microseconds;
using boost::posix_time::milliseconds;
using boost::posix_time::seconds;

bool acquireFor10s(Scene& scene)
{
    return scene.lock().acquire(seconds(10), false);
}

bool freeDirectory(Scene& scene)
{
    return scene.lock().tryAcquire(false);
}

bool takenDirectory(Scene& scene)
{
    scene.take(0);
    return scene.lock().tryAcquire(false);
}

bool queuedThenFreed(Scene& scene)
{
    scene.take(0);
    scene.before("create #0", 2, [&] { scene.free(0); });
    return acquireFor10s(scene);
}

/// From level 2: level 1 is freed first, then level 0.
bool twoLevelsDown(Scene& scene)
{
    scene.take(0);
    scene.take(1);
    scene.before("create #1", 2, [&] { scene.free(1); });
    scene.before("create #0", 2, [&] { scene.free(0); });
    return acquireFor10s(scene);
}

bool staleTouched(Scene& scene)
{
    scene.take(0, 40);
    return acquireFor10s(scene);
}

bool staleRemoved(Scene& scene)
{
    scene.take(0, 40);
    scene.refuse("refresh #0", 1);
    return acquireFor10s(scene);
}

bool staleNotRemoved(Scene& scene)
{
    scene.take(0, 40);
    scene.refuse("refresh #0", 1);
    scene.refuse("remove #0", 1);
    return acquireFor10s(scene);
}

bool ownNotRemovedAfterCreation(Scene& scene)
{
    scene.refuse("remove #1");
    return queuedThenFreed(scene);
}

bool ownNotRemovedAfterTakeover(Scene& scene)
{
    scene.refuse("remove #1");
    return staleTouched(scene);
}

bool vanishedBeforeTheDeadline(Scene& scene)
{
    scene.take(0);
    scene.before("mtime #0", 1, [&] { scene.free(0); });
    return acquireFor10s(scene);
}

bool vanishedAtTheDeadline(Scene& scene)
{
    scene.take(0);
    scene.before("mtime #0", 1, [&] {
        scene.free(0);
        fake_clock::set(fake_clock::start() + seconds(10));
    });
    return acquireFor10s(scene);
}

bool failedWhileQueued(Scene& scene)
{
    scene.take(0);
    scene.before("mtime #0", 2, [] { throw zvFileAccessError("boom"); });
    return acquireFor10s(scene);
}

bool notValid(Scene& scene)
{
    scene.refuse("exists #0", 2);
    return scene.lock().acquire(seconds(10), false);
}

bool timedOut(Scene& scene)
{
    scene.take(0);
    return scene.lock().acquire(milliseconds(20), false);
}

bool timedOutAndNotRemoved(Scene& scene)
{
    scene.refuse("remove #1");
    return timedOut(scene);
}

bool raceLost(Scene& scene)
{
    scene.before("create #0", 1, [&] { scene.take(0); });
    scene.before("create #0", 2, [&] { scene.free(0); });
    return acquireFor10s(scene);
}

const Scenario all[] = {
    {"free", &freeDirectory},
    {"taken", &takenDirectory},
    {"queued then freed", &queuedThenFreed},
    {"two levels down", &twoLevelsDown},
    {"stale touched", &staleTouched},
    {"stale removed", &staleRemoved},
    {"stale not removed", &staleNotRemoved},
    {"own not removed after creation", &ownNotRemovedAfterCreation},
    {"own not removed after takeover", &ownNotRemovedAfterTakeover},
    {"vanished before the deadline", &vanishedBeforeTheDeadline},
    {"vanished at the deadline", &vanishedAtTheDeadline},
    {"failed while queued", &failedWhileQueued},
    {"not valid", &notValid},
    {"timed out", &timedOut},
    {"timed out and not removed", &timedOutAndNotRemoved},
    {"race lost", &raceLost},
};

}  // namespace

const Scenario& scenario(const std::string& name)
{
    for (const Scenario& each : all)
        if (name == each.name)
            return each;
    throw std::invalid_argument("no scenario is called " + name);
}

}  // namespace test
}  // namespace zorvel
