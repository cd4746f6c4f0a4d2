#pragma once

#include "tests/unit/dirlock/read_write_scene.h"

#include <ostream>
#include <string>
#include <vector>

/// The shapes of what readers and writers do, in which every operation is made
/// to fail, one after another.
namespace zorvel {
namespace test {

struct ReadWriteShape
{
    const char* name;
    void (*prepare)(ReadWriteScene& scene);
    /// Whether it holds the directory afterwards.
    bool (*act)(ReadWriteScene& scene);
};

inline bool readWithin10s(ReadWriteScene& scene)
{
    return scene.reader().acquire(boost::posix_time::seconds(10), false);
}

inline bool writeWithin10s(ReadWriteScene& scene)
{
    return scene.writer().acquire(boost::posix_time::seconds(10), false);
}

/// The scene's reader takes the result.
inline bool becomeReader(ReadWriteScene& scene)
{
    scene.reader() = scene.writer().downgrade();
    return scene.reader().isAcquired();
}

inline void nobodyThere(ReadWriteScene&) {}

inline void deadWriter(ReadWriteScene& scene)
{
    scene.addWriter(40);
}

inline void deadReaderAndWriter(ReadWriteScene& scene)
{
    scene.addReader(1, 40);
    scene.addWriter(40);
}

inline void writerLeaves(ReadWriteScene& scene)
{
    scene.addWriter();
    scene.before("anyMatch W", 2, [&scene] { scene.dropWriter(); });
}

inline void readerLeaves(ReadWriteScene& scene)
{
    scene.addReader(1);
    scene.before("walk R*", 2, [&scene] { scene.dropReader(1); });
}

inline void guardIsFreed(ReadWriteScene& scene)
{
    scene.take(0);
    scene.before("create #0", 2, [&scene] { scene.free(0); });
}

inline void writing(ReadWriteScene& scene)
{
    writeWithin10s(scene);
    scene.fs().clearLog();
}

const ReadWriteShape readWriteShapes[] = {
    {"read_free", &nobodyThere, &readWithin10s},
    {"read_after_dead_writer", &deadWriter, &readWithin10s},
    {"read_after_writer_left", &writerLeaves, &readWithin10s},
    {"read_after_guard_freed", &guardIsFreed, &readWithin10s},
    {"write_free", &nobodyThere, &writeWithin10s},
    {"write_after_dead", &deadReaderAndWriter, &writeWithin10s},
    {"write_after_reader_left", &readerLeaves, &writeWithin10s},
    {"write_after_guard_freed", &guardIsFreed, &writeWithin10s},
    {"downgrade", &writing, &becomeReader},
};

/// For the names of tests.
inline std::ostream& operator<<(std::ostream& out, const ReadWriteShape& shape)
{
    return out << shape.name;
}

/// Every operation takes a millisecond.
inline void prepare(ReadWriteScene& scene, const ReadWriteShape& shape)
{
    scene.fs().setHook([](const Operation&) { fake_clock::advance(boost::posix_time::milliseconds(1)); });
    shape.prepare(scene);
}

/// The operations when nothing fails.
inline std::vector<std::string> healthyOperations(const ReadWriteShape& shape)
{
    ReadWriteScene scene;
    prepare(scene, shape);
    shape.act(scene);
    return scene.operations();
}

}  // namespace test
}  // namespace zorvel
