// The exposure figures of 10,000,000 samples at a 3-second step (a year), from the data
// set in memory. Target: at most 400 ms; the only copy is one float per sample. Run it
// alone for its own peak memory: --benchmark_filter=Exposure
#include "analysis/exposure.h"
#include "bench_support.h"
#include "core/data_set.h"
#include "core/host.h"
#include "core/regional.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <random>

namespace {
constexpr int32_t kSamples = 10000000;

// The field of the year log: slow daily swing, noise, a burst every 100,000 samples and
// a sample without data every 50,000; two decimals, as the loader rounds them.
const fm::MeasurementData &Year() {
    static const fm::MeasurementData d = [] {
        fm::MeasurementData m;
        m.DataCount = kSamples;
        m.DataStart = fm::DateFromParts(2025, 12, 30, 20);
        m.DataStep = 3;
        m.DataStepUnit = QStringLiteral("s");
        m.DataValue.assign(size_t(kSamples) + 1, 0.0);
        std::mt19937 rng(540);
        std::normal_distribution<double> noise(0, 0.02);
        for (int32_t i = 1; i <= kSamples; ++i) {
            const double base = 0.3 + 0.25 * std::sin(i / 8640.0 * 6.283) + (i % 100000 < 500 ? 3.0 : 0.0);
            m.DataValue[size_t(i)] =
                i % 50000 == 7 ? -1.0 : std::round(std::fabs(base + noise(rng)) * 100) / 100;
        }
        return m;
    }();
    return d;
}
}  // namespace

static void BM_Exposure_Year(benchmark::State &state) {
    fm::QuietHost host;
    fm::SetHost(&host);
    const fm::MeasurementData &d = Year();
    const long before = bench::PeakRssMb();
    for (auto _ : state) {
        const fm::ExposureFigures f = fm::ComputeExposure(d, 0.5f);
        if (f.valid == 0) state.SkipWithError("no figures");
        benchmark::DoNotOptimize(f.p99);
    }
    state.counters["peak_rss_MB"] = double(bench::PeakRssMb());
    state.counters["rss_before_MB"] = double(before);
    fm::SetHost(nullptr);
}
BENCHMARK(BM_Exposure_Year)->Unit(benchmark::kMillisecond)->Iterations(5);
