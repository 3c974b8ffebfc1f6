#pragma once
#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>

namespace fm {
// A series whose figures run on as each sample comes: values from slot 1, the newest in
// slot count. Plain arrays, so that live mode keeps its record to itself.
struct RunningSeries {
    const double *values = nullptr;
    size_t size = 0;
    int32_t count = 0;
    float *max = nullptr, *min = nullptr, *mean = nullptr;
};
// "Data": maximum, minimum and mean of the data set; any other text: of the running
// series, folding in its newest sample.
void CalculateStats(const QString &source, const RunningSeries &series = {});
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
