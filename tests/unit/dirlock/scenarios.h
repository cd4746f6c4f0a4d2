#pragma once

#include "tests/unit/dirlock/scene.h"

#include <string>
#include <vector>

/// The branches of an acquire, each brought about in a scene. The same ones
/// are run for their operations and, in processes of their own, for their log
/// lines.
namespace zorvel {
namespace test {

struct Scenario
{
    const char* name;
    /// Prepares the scene and acquires. Exceptions leave.
    bool (*run)(Scene& scene);
};

/// By its name, which must exist.
const Scenario& scenario(const std::string& name);

}  // namespace test
}  // namespace zorvel
