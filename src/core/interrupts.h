#pragma once
// Ctrl+C, SIGTERM and SIGHUP end a run through its own way out: the signal becomes an
// event of the main loop, where files can still be closed properly. A second signal
// of the same kind ends the process at once, as the user then insists.
#include <functional>

namespace fm {
void WatchInterrupts(std::function<void(int signal)> handler);
// The signal that came, or 0.
int InterruptSignal();
} // namespace fm
