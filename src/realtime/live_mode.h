#pragma once
// Live mode: a sample asked of the logger every three seconds while the viewer runs.
#include <QString>

namespace fm {
// "Start" or "Stop"; true only after a successful start.
bool RealTimeView(const QString &action);
void ViewTimer();
// Before a stop: lets events run until no reply is outstanding.
void WaitForIdleLink();

// Tests shorten the period; the application never does.
void SetLivePeriodForTests(int ms);
}  // namespace fm
