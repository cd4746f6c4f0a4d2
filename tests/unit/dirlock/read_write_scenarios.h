#pragma once

#include "tests/unit/dirlock/read_write_scene.h"

#include <string>
#include <vector>

/// The branches of an acquire of a reader and of a writer, each brought about
/// in a scene. The same ones are run for their operations and, in processes of
/// their own, for their log lines.
namespace zorvel {
namespace test {

struct ReadWriteScenario
{
    const char* name;
    /// Prepares the scene and acquires. Exceptions leave.
    bool (*run)(ReadWriteScene& scene);
};

/// By its name ("reader: free"), which must exist.
const ReadWriteScenario& readWriteScenario(const std::string& name);

/// All names.
std::vector<std::string> readWriteScenarios();

}  // namespace test
}  // namespace zorvel
