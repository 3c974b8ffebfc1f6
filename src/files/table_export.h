#pragma once
// The data set as tables for other programs: ";" with a short heading (".csv") or tab
// separated without one (".tab"). Neither changes the data set.
#include <QString>

namespace fm {
bool SaveCsvFile(const QString &fileName);
bool SaveFileTxt(const QString &fileName);
// filterIndex 1 is the ";" table; any other the tab table.
bool SaveTable(const QString &fileName, int filterIndex);
} // namespace fm
