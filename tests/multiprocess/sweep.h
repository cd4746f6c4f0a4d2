#pragma once

#include "tests/multiprocess/scene.h"

#include <zorvel/lockfile.h>

#include <boost/shared_ptr.hpp>

namespace zorvel {
namespace test {

/// Clears the queue of a directory that nobody works in, all of whose lock
/// files are stale. What a dead waiter left behind everybody else in the queue
/// stays until somebody queues behind it: it is in nobody's way. With as many
/// waiters as there are places up to the last one left, somebody does.
void sweepQueue(const Scene& scene, const boost::shared_ptr<zvAbstractFS>& fs);

}  // namespace test
}  // namespace zorvel
