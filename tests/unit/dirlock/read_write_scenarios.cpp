#include "tests/unit/dirlock/read_write_scenarios.h"

#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

using boost::posix_time::milliseconds;
using boost::posix_time::seconds;

typedef ReadWriteScene Scene;

bool tryRead(Scene& scene)
{
    return scene.reader().tryAcquire(false);
}

bool readWithin10s(Scene& scene)
{
    return scene.reader().acquire(seconds(10), false);
}

bool tryWrite(Scene& scene)
{
    return scene.writer().tryAcquire(false);
}

bool writeWithin10s(Scene& scene)
{
    return scene.writer().acquire(seconds(10), false);
}

// Readers.

bool readAmongReaders(Scene& scene)
{
    scene.addReader(1);
    scene.addReader(2, 40);
    return tryRead(scene);
}

bool readUnrefreshed(Scene& scene)
{
    return scene.reader().tryAcquire(true);
}

bool readAgainstFreshWriter(Scene& scene)
{
    scene.addWriter();
    return tryRead(scene);
}

bool readAfterStaleWriter(Scene& scene)
{
    scene.addWriter(40);
    return tryRead(scene);
}

bool readPastStaleWriterNotRemoved(Scene& scene)
{
    scene.refuse("remove W");
    return readAfterStaleWriter(scene);
}

bool readAfterWriterLeft(Scene& scene)
{
    scene.addWriter();
    scene.before("anyMatch W", 3, [&] { scene.dropWriter(); });
    return readWithin10s(scene);
}

bool readTimedOut(Scene& scene)
{
    scene.addWriter();
    return scene.reader().acquire(milliseconds(20), false);
}

bool readAfterWriterVanished(Scene& scene)
{
    scene.addWriter();
    scene.before("mtime W", 1, [&] { scene.dropWriter(); });
    return readWithin10s(scene);
}

bool tryReadWhileWriterVanishes(Scene& scene)
{
    scene.addWriter();
    scene.before("mtime W", 1, [&] { scene.dropWriter(); });
    return tryRead(scene);
}

bool readWithoutGuard(Scene& scene)
{
    scene.take(0);
    return tryRead(scene);
}

bool readWithoutGuardAgainstFreshWriter(Scene& scene)
{
    scene.addWriter();
    return readWithoutGuard(scene);
}

bool readAfterWaitingForGuardInVain(Scene& scene)
{
    scene.take(0);
    return scene.reader().acquire(milliseconds(25), false);
}

bool readAfterGuardFreed(Scene& scene)
{
    scene.take(0);
    scene.before("create #0", 2, [&] { scene.free(0); });
    return readWithin10s(scene);
}

bool readWithStaleGuard(Scene& scene)
{
    scene.take(0, 40);
    return readWithin10s(scene);
}

bool readWithGuardNotValid(Scene& scene)
{
    scene.refuse("exists #0", 2);
    return readWithin10s(scene);
}

bool readNotValid(Scene& scene)
{
    scene.refuse("exists own1");
    return tryRead(scene);
}

bool readAfterCollisions(Scene& scene)
{
    scene.refuse("create own1");
    scene.refuse("create own2");
    return tryRead(scene);
}

// Writers.

bool writeUnrefreshed(Scene& scene)
{
    return scene.writer().tryAcquire(true);
}

bool writeAgainstFreshReader(Scene& scene)
{
    scene.addReader(1);
    return tryWrite(scene);
}

bool writeAgainstFreshWriter(Scene& scene)
{
    scene.addWriter();
    return tryWrite(scene);
}

bool writeAgainstBoth(Scene& scene)
{
    scene.addReader(1);
    scene.addWriter();
    return tryWrite(scene);
}

bool writeAfterStaleReader(Scene& scene)
{
    scene.addReader(1, 40);
    return tryWrite(scene);
}

bool writeAfterStaleWriter(Scene& scene)
{
    scene.addWriter(40);
    return tryWrite(scene);
}

bool writeAfterStaleBoth(Scene& scene)
{
    scene.addReader(1, 40);
    scene.addWriter(40);
    return tryWrite(scene);
}

bool writeAgainstMixedReaders(Scene& scene)
{
    scene.addReader(1, 40);
    scene.addReader(2);
    scene.addReader(3, 40);
    return tryWrite(scene);
}

bool writePastStaleReaderNotRemoved(Scene& scene)
{
    scene.refuse("remove R1", 1);
    scene.addReader(1, 40);
    return writeWithin10s(scene);
}

bool writeAgainstStaleWriterNotRemoved(Scene& scene)
{
    scene.refuse("remove W");
    scene.addWriter(40);
    return tryWrite(scene);
}

bool writeAfterReaderLeft(Scene& scene)
{
    scene.addReader(1);
    scene.before("walk R*", 3, [&] { scene.dropReader(1); });
    return writeWithin10s(scene);
}

bool writeAfterReaderAndWriterLeft(Scene& scene)
{
    scene.addReader(1);
    scene.addWriter();
    scene.before("walk R*", 2, [&] { scene.dropReader(1); });
    scene.before("walk R*", 3, [&] { scene.dropWriter(); });
    return writeWithin10s(scene);
}

bool writeTimedOut(Scene& scene)
{
    scene.addReader(1);
    return scene.writer().acquire(milliseconds(20), false);
}

bool writeWhileReaderVanishes(Scene& scene)
{
    scene.addReader(1);
    scene.before("mtime R1", 1, [&] { scene.dropReader(1); });
    return tryWrite(scene);
}

bool writeWhileWriterVanishes(Scene& scene)
{
    scene.addWriter();
    scene.before("mtime W", 1, [&] { scene.dropWriter(); });
    return tryWrite(scene);
}

bool writeAfterReaderCameDuringTheWalk(Scene& scene)
{
    scene.before("walk W", 1, [&] { scene.addReader(1); });
    scene.before("walk R*", 2, [&] { scene.dropReader(1); });
    return writeWithin10s(scene);
}

bool writeWithoutGuard(Scene& scene)
{
    scene.take(0);
    return tryWrite(scene);
}

bool writeWithoutGuardAgainstFreshReader(Scene& scene)
{
    scene.take(0);
    return writeAgainstFreshReader(scene);
}

bool writeAfterWaitingForGuardInVain(Scene& scene)
{
    scene.take(0);
    return scene.writer().acquire(milliseconds(25), false);
}

bool writeAfterGuardFreed(Scene& scene)
{
    scene.take(0);
    scene.before("create #0", 2, [&] { scene.free(0); });
    return writeWithin10s(scene);
}

bool writeWithStaleGuard(Scene& scene)
{
    scene.take(0, 40);
    return writeWithin10s(scene);
}

bool writeNotValid(Scene& scene)
{
    scene.refuse("exists W");
    return tryWrite(scene);
}

const ReadWriteScenario all[] = {
    {"reader: free", &tryRead},
    {"reader: among readers", &readAmongReaders},
    {"reader: unrefreshed", &readUnrefreshed},
    {"reader: fresh writer", &readAgainstFreshWriter},
    {"reader: stale writer", &readAfterStaleWriter},
    {"reader: stale writer not removed", &readPastStaleWriterNotRemoved},
    {"reader: writer left", &readAfterWriterLeft},
    {"reader: timed out", &readTimedOut},
    {"reader: writer vanished", &readAfterWriterVanished},
    {"reader: writer vanished at the deadline", &tryReadWhileWriterVanishes},
    {"reader: no guard", &readWithoutGuard},
    {"reader: no guard, fresh writer", &readWithoutGuardAgainstFreshWriter},
    {"reader: guard waited for in vain", &readAfterWaitingForGuardInVain},
    {"reader: guard freed", &readAfterGuardFreed},
    {"reader: stale guard", &readWithStaleGuard},
    {"reader: guard not valid", &readWithGuardNotValid},
    {"reader: not valid", &readNotValid},
    {"reader: collisions", &readAfterCollisions},
    {"writer: free", &tryWrite},
    {"writer: unrefreshed", &writeUnrefreshed},
    {"writer: fresh reader", &writeAgainstFreshReader},
    {"writer: fresh writer", &writeAgainstFreshWriter},
    {"writer: fresh reader and writer", &writeAgainstBoth},
    {"writer: stale reader", &writeAfterStaleReader},
    {"writer: stale writer", &writeAfterStaleWriter},
    {"writer: stale reader and writer", &writeAfterStaleBoth},
    {"writer: stale and fresh readers", &writeAgainstMixedReaders},
    {"writer: stale reader not removed", &writePastStaleReaderNotRemoved},
    {"writer: stale writer not removed", &writeAgainstStaleWriterNotRemoved},
    {"writer: reader left", &writeAfterReaderLeft},
    {"writer: reader and writer left", &writeAfterReaderAndWriterLeft},
    {"writer: timed out", &writeTimedOut},
    {"writer: reader vanished", &writeWhileReaderVanishes},
    {"writer: writer vanished", &writeWhileWriterVanishes},
    {"writer: reader came during the walk", &writeAfterReaderCameDuringTheWalk},
    {"writer: no guard", &writeWithoutGuard},
    {"writer: no guard, fresh reader", &writeWithoutGuardAgainstFreshReader},
    {"writer: guard waited for in vain", &writeAfterWaitingForGuardInVain},
    {"writer: guard freed", &writeAfterGuardFreed},
    {"writer: stale guard", &writeWithStaleGuard},
    {"writer: not valid", &writeNotValid},
};

}  // namespace

const ReadWriteScenario& readWriteScenario(const std::string& name)
{
    for (const ReadWriteScenario& each : all)
        if (name == each.name)
            return each;
    throw std::invalid_argument("no scenario is called " + name);
}

std::vector<std::string> readWriteScenarios()
{
    std::vector<std::string> names;
    for (const ReadWriteScenario& each : all)
        names.push_back(each.name);
    return names;
}

}  // namespace test
}  // namespace zorvel
