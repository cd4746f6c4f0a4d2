#pragma once

#include "tests/unit/dirlock/scene.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

/// The shapes of an acquire in which every operation is made to fail, one
/// after another.
namespace zorvel {
namespace test {

struct Shape
{
    const char* name;
    void (*prepare)(Scene& scene);
};

inline void freeDirectory(Scene&) {}

inline void queuedThenFreed(Scene& scene)
{
    scene.take(0);
    scene.before("create #0", 2, [&scene] { scene.free(0); });
}

inline void staleTakeover(Scene& scene)
{
    scene.take(0, 40);
}

const Shape shapes[] = {
    {"free", &freeDirectory},
    {"queued_then_freed", &queuedThenFreed},
    {"stale_takeover", &staleTakeover},
};

/// For the names of tests.
inline std::ostream& operator<<(std::ostream& out, const Shape& shape)
{
    return out << shape.name;
}

/// Every operation takes a millisecond.
inline void prepare(Scene& scene, const Shape& shape)
{
    scene.fs().setHook([](const Operation&) { fake_clock::advance(boost::posix_time::milliseconds(1)); });
    shape.prepare(scene);
}

/// The operations of the acquire when nothing fails.
inline std::vector<std::string> healthyOperations(const Shape& shape)
{
    Scene scene;
    prepare(scene, shape);
    scene.lock().acquire(boost::posix_time::seconds(10), false);
    return scene.operations();
}

}  // namespace test
}  // namespace zorvel
