#pragma once
// "Field Activity Log" files: the application's own way of keeping a measurement.
#include <QString>

namespace fm {
// Reads a log (or, for a name ending in ".csv", a "File Centralina" file) into the
// data set. Reports its own failures; false when nothing usable was loaded.
bool LoadFile(const QString &fileName);
// Writes the data set; asks before replacing a file. The previous file stays whole
// when writing fails.
bool SaveFile(const QString &fileName);
// Reached through LoadFile for ".csv" names; filled in by the CSV import.
bool OpenCsv(const QString &fileName);
} // namespace fm
