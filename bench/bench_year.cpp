// A year of samples: 10,000,000 at a 3-second step. Loading the log, the two tables,
// the data list's text by time. Run each alone to read its own peak memory, e.g.
//   fluxmere-bench --benchmark_filter=BM_Year_Load
#include "bench_support.h"
#include "core/data_set.h"
#include "core/host.h"
#include "files/log_file.h"
#include "files/table_export.h"
#include "shell/data_list.h"

#include <benchmark/benchmark.h>
#include <QFile>
#include <QTemporaryDir>

namespace {
constexpr int32_t kYear = 10000000;

QTemporaryDir &Dir() {
    static QTemporaryDir dir;
    return dir;
}

const QString &YearLog() {
    static const QString path = [] {
        const QString p = Dir().filePath(QStringLiteral("year.log"));
        bench::WriteLog(p, kYear, 3);
        return p;
    }();
    return path;
}

struct Quiet {
    fm::QuietHost host;
    Quiet() { fm::SetHost(&host); }
    ~Quiet() { fm::SetHost(nullptr); }
};

// The year in memory, loaded once for the benchmarks that read it.
bool Loaded() {
    if (fm::Data().DataCount == kYear) return true;
    fm::Data() = fm::MeasurementData{};
    return fm::LoadFile(YearLog());
}

void Report(benchmark::State &state) {
    state.counters["peak_rss_MB"] = double(bench::PeakRssMb());
}
}  // namespace

static void BM_Year_Load(benchmark::State &state) {
    Quiet quiet;
    const QString &path = YearLog();
    for (auto _ : state) {
        state.PauseTiming();
        fm::Data() = fm::MeasurementData{};  // the previous load's memory goes first
        state.ResumeTiming();
        if (!fm::LoadFile(path)) state.SkipWithError("load failed");
    }
    Report(state);
}
BENCHMARK(BM_Year_Load)->Unit(benchmark::kMillisecond)->Iterations(2);

// Arg 1: the ";" table, 2: the tab table, each written in full through the safe writer.
static void BM_Year_Export(benchmark::State &state) {
    Quiet quiet;
    if (!Loaded()) return state.SkipWithError("load failed");
    const QString out = Dir().filePath(QStringLiteral("year.txt"));
    for (auto _ : state) {
        if (!fm::SaveTable(out, int(state.range(0)))) state.SkipWithError("export failed");
        state.PauseTiming();
        QFile::remove(out);
        state.ResumeTiming();
    }
    Report(state);
}
BENCHMARK(BM_Year_Export)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->Iterations(2);

static void BM_Year_ListText(benchmark::State &state) {
    Quiet quiet;
    if (!Loaded()) return state.SkipWithError("load failed");
    // The text a megabyte at a time, as the list's save writes it.
    for (auto _ : state) {
        const fm::DataList list(true);
        qsizetype bytes = 0;
        list.WriteText([&bytes](QByteArray &part) {
            bytes += part.size();
            part.resize(0);
        });
        benchmark::DoNotOptimize(bytes);
    }
    Report(state);
}
BENCHMARK(BM_Year_ListText)->Unit(benchmark::kMillisecond)->Iterations(2);
