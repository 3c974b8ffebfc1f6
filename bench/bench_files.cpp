// Loading and saving a 1,000,000-sample log, and the statistics and median on it.
#include "analysis/statistics.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/host.h"
#include "files/log_file.h"

#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cmath>
#include <random>
#include <sys/resource.h>

namespace {
constexpr int kSamples = 1000000;

// A slowly varying field with noise and a few samples without data, as a logger writes it.
const QString &BigLog() {
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString p = dir.filePath(QStringLiteral("big.log"));
        QFile f(p);
        f.open(QIODevice::WriteOnly);
        f.write("\"Field Activity Log\"\r\n\"14/10/2026 08:00:00@26/11/2026 06:40:00@1\"\r\n\"10s\"\r\n");
        f.write("\"" + QByteArray::number(kSamples) + "\"\r\n\"QL540-0042\"\r\n\"Bench\"\r\n");
        std::mt19937 rng(540);
        std::normal_distribution<double> noise(0, 0.01);
        QByteArray chunk;
        for (int i = 0; i < kSamples; ++i) {
            if (i % 50000 == 7) {
                chunk += "\"-1 -1 -1 0\"\r\n";
            } else {
                const double base = 0.3 + 0.25 * std::sin(i / 8640.0 * 6.283) + (i % 100000 < 500 ? 3.0 : 0.0);
                chunk += '"' + QByteArray::number(std::fabs(base * 0.8 + noise(rng)), 'f', 2) + ' ' +
                         QByteArray::number(std::fabs(base * 0.5 + noise(rng)), 'f', 2) + ' ' +
                         QByteArray::number(std::fabs(base * 0.3 + noise(rng)), 'f', 2) + "  0\"\r\n";
            }
            if (chunk.size() > (1 << 20)) {
                f.write(chunk);
                chunk.clear();
            }
        }
        f.write(chunk);
        return p;
    }();
    return path;
}

long PeakRssMb() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss / 1024;
}

struct Quiet {
    fm::QuietHost host;
    Quiet() { fm::SetHost(&host); }
    ~Quiet() { fm::SetHost(nullptr); }
};
} // namespace

static void BM_LoadFile_1M(benchmark::State &state) {
    Quiet quiet;
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
    Quiet quiet;
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
    Quiet quiet;
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
