// Reading a "File Centralina" file of 1,000,000 records (about 45 MB).
// Target: at most 400 ms and 200 MB of peak resident memory (run it alone:
// --benchmark_filter=OpenCsv, since the peak is the process's).
#include "bench_support.h"
#include "core/data_set.h"
#include "core/host.h"
#include "files/log_file.h"

#include <benchmark/benchmark.h>
#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <random>

namespace {
constexpr int kRecords = 1000000;

// A unit near a transmitter: a slowly varying field, an RF field with noise, and an
// auxiliary channel that is mostly absent (-100).
const QString &BigCsv() {
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString p = dir.filePath(QStringLiteral("big.csv"));
        QFile f(p);
        f.open(QIODevice::WriteOnly);
        std::mt19937 rng(540);
        std::normal_distribution<double> noise(0, 0.01);
        QByteArray chunk;
        for (int i = 0; i < kRecords; ++i) {
            const double base = 0.3 + 0.25 * std::sin(i / 8640.0 * 6.283);
            const double x = std::fabs(base * 0.8 + noise(rng)), y = std::fabs(base * 0.5 + noise(rng)),
                         z = std::fabs(base * 0.3 + noise(rng));
            chunk += "14/10/2026 08:00:00," + QByteArray::number(x, 'f', 3) + ',' +
                     QByteArray::number(y, 'f', 3) + ',' + QByteArray::number(z, 'f', 3) + ',' +
                     (i % 10 ? QByteArray("-100") : QByteArray::number(20 + noise(rng) * 100, 'f', 1)) + ',' +
                     QByteArray::number(1.5 + std::fabs(noise(rng)) * 50, 'f', 3) + ',' +
                     QByteArray::number(std::sqrt(x * x + y * y + z * z), 'f', 2) + '\n';
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
}  // namespace

static void BM_OpenCsv_1M(benchmark::State &state) {
    fm::QuietHost host;
    fm::SetHost(&host);
    const QString &path = BigCsv();
    const long before = bench::PeakRssMb();
    for (auto _ : state) {
        fm::Data() = fm::MeasurementData{};
        if (!fm::LoadFile(path)) state.SkipWithError("load failed");
    }
    state.counters["peak_rss_MB"] = double(bench::PeakRssMb());
    state.counters["rss_before_MB"] = double(before);
    state.counters["file_MB"] = double(QFile(path).size()) / (1 << 20);
    fm::SetHost(nullptr);
}
BENCHMARK(BM_OpenCsv_1M)->Unit(benchmark::kMillisecond)->Iterations(5);
