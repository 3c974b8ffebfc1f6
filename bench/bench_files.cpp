// Loading and saving a 1,000,000-sample log, and the statistics and median on it.
#include "analysis/statistics.h"
#include "bench_support.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/host.h"
#include "files/log_file.h"

#include <benchmark/benchmark.h>
#include <QFile>
#include <QTemporaryDir>

namespace {
constexpr int kSamples = 1000000;

const QString &BigLog() {
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString p = dir.filePath(QStringLiteral("big.log"));
        bench::WriteLog(p, kSamples, 10);
        return p;
    }();
    return path;
}

using bench::PeakRssMb;

} // namespace

static void BM_LoadFile_1M(benchmark::State &state) {
    bench::Quiet quiet;
    const QString &path = BigLog();
    const long before = PeakRssMb();
    for (auto _ : state) {
        fm::Data() = fm::MeasurementData{};
        if (!fm::LoadFile(path)) state.SkipWithError("load failed");
    }
    state.counters["peak_rss_MB"] = double(PeakRssMb());
    state.counters["rss_before_MB"] = double(before);
}
BENCHMARK(BM_LoadFile_1M)->Unit(benchmark::kMillisecond)->Iterations(5);

static void BM_SaveFile_1M(benchmark::State &state) {
    bench::Quiet quiet;
    fm::Data() = fm::MeasurementData{};
    fm::LoadFile(BigLog());
    QTemporaryDir dir;
    const QString out = dir.filePath(QStringLiteral("out.log"));
    for (auto _ : state) {
        state.PauseTiming();
        QFile::remove(out);
        state.ResumeTiming();
        if (!fm::SaveFile(out)) state.SkipWithError("save failed");
    }
}
BENCHMARK(BM_SaveFile_1M)->Unit(benchmark::kMillisecond)->Iterations(5);

static void BM_StatsAndMedian_1M(benchmark::State &state) {
    bench::Quiet quiet;
    fm::Data() = fm::MeasurementData{};
    fm::LoadFile(BigLog());
    fm::MeasurementData &d = fm::Data();
    for (auto _ : state) {
        state.PauseTiming();
        for (int32_t i = 1; i <= d.DataCount; ++i) {  // the loader's seed, unsorted again
            const bool mark = d.DataValue[size_t(i)] == -1;
            d.SortedValue[size_t(i)] = mark ? 0 : d.DataValue[size_t(i)];
            d.SortedIndex[size_t(i)] = mark ? 0 : i;
        }
        state.ResumeTiming();
        fm::CalculateStats(QStringLiteral("Data"));
        fm::CalculateMediana();
    }
}
BENCHMARK(BM_StatsAndMedian_1M)->Unit(benchmark::kMillisecond)->Iterations(5);
