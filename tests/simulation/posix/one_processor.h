#pragma once

namespace zorvel {
namespace sim {

/// Keeps this program's threads, of which one runs at a time, on one
/// processor: handing over is several times faster then. False where the
/// system does not allow it, which does no harm.
bool useOneProcessor();

}  // namespace sim
}  // namespace zorvel
