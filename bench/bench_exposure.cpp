// The exposure figures of 10,000,000 samples at a 3-second step (a year), from the data
// set in memory. Target: at most 400 ms; the only copy is one float per sample. Run it
// alone for its own peak memory: --benchmark_filter=Exposure
#include "analysis/exposure.h"
#include "bench_support.h"
#include "core/data_set.h"
#include "core/host.h"
#include "core/regional.h"

#include <benchmark/benchmark.h>

namespace {
constexpr int32_t kSamples = 10000000;

const fm::MeasurementData &Year() {
    static const fm::MeasurementData d = [] {
        fm::MeasurementData m;
        bench::FillLineField(m, kSamples, fm::DateFromParts(2025, 12, 30, 20));
        return m;
    }();
    return d;
}
}  // namespace

static void BM_Exposure_Year(benchmark::State &state) {
    bench::Quiet quiet;
    const fm::MeasurementData &d = Year();
    const long before = bench::PeakRssMb();
    for (auto _ : state) {
        const fm::ExposureFigures f = fm::ComputeExposure(d, 0.5f);
        if (f.valid == 0) state.SkipWithError("no figures");
        benchmark::DoNotOptimize(f.p99);
    }
    state.counters["peak_rss_MB"] = double(bench::PeakRssMb());
    state.counters["rss_before_MB"] = double(before);
}
BENCHMARK(BM_Exposure_Year)->Unit(benchmark::kMillisecond)->Iterations(5);
