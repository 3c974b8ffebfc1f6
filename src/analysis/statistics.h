#pragma once
#include <QString>

namespace fm {
// "Data": maximum, minimum and mean of the data set; any other text: of the live samples.
void CalculateStats(const QString &source);
// Orders SortedValue/SortedIndex by value (shell sort) and takes the median.
void CalculateMediana();
} // namespace fm
