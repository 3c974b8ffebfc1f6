// Printing to PDF: the time chart of a million samples on one page, and a data list of
// 100,000 rows on as many pages as it takes. The file's size is reported with the time.
#include "bench_support.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/host.h"
#include "printing/widgets/print_chart.h"
#include "printing/widgets/print_job.h"
#include "shell/data_list.h"
#include "shell/widgets/source_view.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>

static void BM_PrintTimeChartPdf(benchmark::State &state) {
    bench::Quiet quiet;
    bench::MakeDataSet(int32_t(state.range(0)));
    fm::frmGraphTe chart;
    chart.resize(900, 500);
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("chart.pdf"));
    for (auto _ : state)
        fm::PrintToPdf(pdf, true, [&](fm::PrinterPage &page) {
            fm::DrawChartPage(page, fm::ChartPrintTitle(), chart.teeEvolution, true);
        });
    state.counters["pdf_MB"] = double(QFileInfo(pdf).size()) / (1 << 20);
}
BENCHMARK(BM_PrintTimeChartPdf)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);

static void BM_PrintListPdf(benchmark::State &state) {
    bench::Quiet quiet;
    bench::MakeDataSet(int32_t(state.range(0)));
    fm::SourceView view;
    view.SetList(std::make_unique<fm::DataList>(true));
    const fm::DataList &list = *view.List();
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("list.pdf"));
    for (auto _ : state)
        fm::PrintToPdf(pdf, false, [&](fm::PrinterPage &page) {
            fm::DrawListPages(page, list, 0, list.LineCount() - 1, list.MedianLine(), view.font());
        });
    state.counters["pdf_MB"] = double(QFileInfo(pdf).size()) / (1 << 20);
}
BENCHMARK(BM_PrintListPdf)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(2);
