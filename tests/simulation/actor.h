#pragma once

namespace zorvel {
namespace sim {

struct ProcessPlan;
class Process;
class World;

/// The name that the processes give to the one directory.
extern const char* const directoryName;

/// What a process does, on its main strand: its turns with the library's own
/// locks, the judge being told.
void act(World& world, Process& process, const ProcessPlan& plan);

}  // namespace sim
}  // namespace zorvel
