#pragma once

#include <signal.h>

namespace zorvel {
namespace zvlock {

/// Blocks the signals that Signals reports, in this thread and those it makes,
/// and returns them. Those ignored when the program began are not among them.
sigset_t blockSignals();

/// The signals that were blocked when the program began: a command starts with
/// these again.
const sigset_t& signalMaskAtStart();

}  // namespace zvlock
}  // namespace zorvel
