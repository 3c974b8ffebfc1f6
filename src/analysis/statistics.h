#pragma once
#include <QString>
#include <array>
#include <cstdint>

namespace fm {
// "Data": maximum, minimum and mean of the data set; any other text: of the live samples.
void CalculateStats(const QString &source);
// Orders SortedValue/SortedIndex by value (shell sort) and takes the median.
void CalculateMediana();

// The histogram of the statistics chart: at most 11 classes between the two limits.
struct Histogram {
    std::array<double, 12> StatPercent{};  // slot 0 not used
    std::array<QString, 12> StatLabel;
    int16_t StatClasses = 0;  // 0 while no run has finished
};
Histogram &Statistics();
void DoStatistics(float minValue, float maxValue, float classes);
} // namespace fm
