#pragma once
// Window-less periodic timers with numeric ids, 0 meaning "no timer".
#include <functional>

namespace fm {
// Starts a timer that calls `callback` every `periodMs` until KillTimer; gives its id.
int SetTimer(int periodMs, std::function<void()> callback);
// KillTimer(0) does nothing.
void KillTimer(int id);
bool TimerRunning(int id);
} // namespace fm
