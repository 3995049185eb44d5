/// Ctrl-C and SIGTERM: the first asks a command to stop cleanly, the second ends it at once.
#pragma once

namespace quentara::cli {

/// Starts to watch for SIGINT and SIGTERM.
void WatchForInterruption();

/// The signal that came, 0 before one has.
int InterruptingSignal();

/// @throws Cancelled once a signal has come.
void CheckInterruption();

}  // namespace quentara::cli
