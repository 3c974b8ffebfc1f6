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

namespace {
void MakeMonth(int32_t n) {
    fm::InitVariabili();
    fm::MeasurementData &d = fm::Data();
    d = fm::MeasurementData{};
    d.DataPresent = true;
    d.SizeArrays(n);
    bench::FillLineField(d, n, fm::DateFromParts(2026, 3, 1, 0));
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
