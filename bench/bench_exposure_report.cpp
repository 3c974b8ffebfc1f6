// The exposure report as a PDF: a month of samples at a 3-second step (864,000), from the
// data set in memory: figures, verdicts against the six built-in references, charts and
// pages. Target: at most 2 s. The file's size is reported with the time.
#include "analysis/exposure.h"
#include "analysis/statistics.h"
#include "analysis/warnings.h"
#include "bench_support.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "printing/widgets/exposure_report.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cmath>
#include <random>

namespace {
// A daily swing with noise, a burst every 100,000 samples and a sample without data every
// 50,000, two decimals as the loader rounds them.
void MakeMonth(int32_t n) {
    fm::InitVariabili();
    fm::MeasurementData &d = fm::Data();
    d = fm::MeasurementData{};
    d.DataPresent = true;
    d.DataCount = n;
    d.DataStep = 3;
    d.DataStepUnit = QStringLiteral("s");
    d.DataStart = fm::DateFromParts(2026, 3, 1, 0);
    d.SizeArrays(n);
    std::mt19937 rng(540);
    std::normal_distribution<double> noise(0, 0.02);
    for (int32_t i = 1; i <= n; ++i) {
        const double base = 0.3 + 0.25 * std::sin(i / 28800.0 * 6.283) + (i % 100000 < 500 ? 3.0 : 0.0);
        const double v = i % 50000 == 7 ? -1.0 : std::round(std::fabs(base + noise(rng)) * 100) / 100;
        d.DataX[size_t(i)] = d.DataY[size_t(i)] = d.DataZ[size_t(i)] = float(v / std::sqrt(3.0));
        d.DataValue[size_t(i)] = v;
    }
    d.DataEnd = d.SampleDate(n);
    fm::CalculateStats(QStringLiteral("Data"));
}
}  // namespace

static void BM_ExposureReportPdf_Month(benchmark::State &state) {
    bench::Quiet quiet;
    fm::InitLibrary(QStringLiteral("Language.dll"));
    fm::SetLanguage(1);
    MakeMonth(int32_t(state.range(0)));
    fm::Options().Soglia = 0.5f;
    fm::GenerateWarnings();
    fm::ExposureChoice choice{QStringLiteral("Via Roma 12"), QStringLiteral("A month beside the line"), {}};
    for (const fm::ExposureReference &r : fm::BuiltInReferences()) choice.references.push_back(r);
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    for (auto _ : state) fm::WriteExposureReport(pdf, choice);
    state.counters["pdf_MB"] = double(QFileInfo(pdf).size()) / (1 << 20);
    state.counters["peak_rss_MB"] = double(bench::PeakRssMb());
}
BENCHMARK(BM_ExposureReportPdf_Month)->Arg(864000)->Unit(benchmark::kMillisecond)->Iterations(3);
