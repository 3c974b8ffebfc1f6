#pragma once
// What several benchmarks share: the peak memory of the process, and a log as a logger
// writes it. Peaks are for the whole process: run a benchmark alone (--benchmark_filter)
// to read its own.
#include "core/host.h"

#include <QString>
#include <cstdint>

namespace fm {
struct MeasurementData;
}

namespace bench {
// Messages of the program under measure go to stderr, never to a window.
struct Quiet {
    fm::QuietHost host;
    Quiet() { fm::SetHost(&host); }
    ~Quiet() { fm::SetHost(nullptr); }
};

long PeakRssMb();
// A slowly varying field with noise and a sample without data every 50,000, from
// 30/12/2025 20:00:00 at `stepSeconds`, so that a long log crosses a year and both
// summer-time changes.
void WriteLog(const QString &path, int32_t samples, int stepSeconds);
// A field beside a line, n samples at a 3-second step from `start`: a daily swing with
// noise, a burst every 100,000 samples and a sample without data every 50,000, two
// decimals as the loader rounds them. The axes are filled where `d` has room for them.
void FillLineField(fm::MeasurementData &d, int32_t n, double start);
// The data set of n samples at a 10-second step, its figures and its order by value made.
void MakeDataSet(int32_t n);
}  // namespace bench
