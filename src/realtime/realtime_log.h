#pragma once
// "RealTime.log": every live sample also goes to a log that LoadFile opens afterwards.
// Its count is not known when the heading is written, so line 4 is reserved as blanks
// and filled in at the close.
#include <QString>

namespace fm {
// Where the log lies: "RealTime.log" beside the options unless another name was set.
QString RealTimeLogPath();
// For fluxmere-cli -o; an empty name returns to the usual place.
void SetRealTimeLogPath(const QString &path);

bool OpenLastLog();
void CloseLastLog();
// One sample line, counted for the close. False (the fault reported) when it did not
// reach the disk whole; the log then ends with the line before.
bool AppendLiveLine(float x, float y, float z);
}  // namespace fm
