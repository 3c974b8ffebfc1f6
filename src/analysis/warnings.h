#pragma once
// The findings on the data set that the warnings window lists.
#include <QString>
#include <vector>

namespace fm {
struct WarningLine {
    QString text;
    int level = 2;  // 2 information, 3 something to look at
};

// The list of the last measurement; replaced whole by each GenerateWarnings.
std::vector<WarningLine> &Warnings();
// Rebuilds Warnings() from the data set and tells the host.
void GenerateWarnings();
} // namespace fm
