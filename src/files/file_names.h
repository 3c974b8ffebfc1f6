#pragma once
#include <QString>

namespace fm {
// Cuts a path at its last backslash (or slash): the folder with the separator, or the file.
QString SplitFileName(const QString &path, bool fileOnly);
// Puts fileName at the head of the recent files of the options and rebuilds the drop-down.
void SaveMRUFile(const QString &fileName);
} // namespace fm
