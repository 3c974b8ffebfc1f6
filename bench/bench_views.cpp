// The views on large data sets: the time chart (open, and redraw after a zoom) and
// the data list, on a million samples and on a full logger memory.
#include "analysis/statistics.h"
#include "bench_support.h"
#include "charts/widgets/chart_control.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/data_set.h"
#include "core/host.h"
#include "shell/data_list.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/source_view.h"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <cmath>
#include <qcustomplot.h>

static void BM_TimeChartOpen(benchmark::State &state) {
    bench::Quiet quiet;
    bench::MakeDataSet(int32_t(state.range(0)));
    for (auto _ : state) {
        fm::frmGraphTe chart;
        chart.resize(900, 500);
        chart.show();
        chart.teeEvolution->Plot()->replot(QCustomPlot::rpImmediateRefresh);
        QApplication::processEvents();
    }
    state.counters["peak_rss_MB"] = double(bench::PeakRssMb());
}
// 10,000,000 is a year at a 3-second step; run it alone to read its own peak memory.
BENCHMARK(BM_TimeChartOpen)
    ->Arg(9349)
    ->Arg(1000000)
    ->Arg(10000000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

static void BM_TimeChartZoomRedraw(benchmark::State &state) {
    bench::Quiet quiet;
    const int32_t n = int32_t(state.range(0));
    bench::MakeDataSet(n);
    fm::frmGraphTe chart;
    chart.resize(900, 500);
    chart.show();
    QCustomPlot *plot = chart.teeEvolution->Plot();
    // A fifth of the samples on show, moved along a little each time.
    const double width = n / 5.0, shift = n / 1000.0;
    int k = 0;
    for (auto _ : state) {
        plot->xAxis->setRange(shift * (k % 50), shift * (k % 50) + width);
        ++k;
        plot->replot(QCustomPlot::rpImmediateRefresh);
    }
}
BENCHMARK(BM_TimeChartZoomRedraw)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMillisecond)->Iterations(20);

static void BM_DataListOpen(benchmark::State &state) {
    bench::Quiet quiet;
    bench::MakeDataSet(1000000);
    for (auto _ : state) {
        fm::frmSource list;
        list.resize(700, 500);
        list.ViewDataSource(state.range(0) == 1);
        list.show();
        benchmark::DoNotOptimize(list.txtSource->viewport()->grab());
    }
}
BENCHMARK(BM_DataListOpen)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(3);

static void BM_Histogram_1M(benchmark::State &state) {
    bench::Quiet quiet;
    bench::MakeDataSet(1000000);
    for (auto _ : state) fm::DoStatistics(0, 1, 11);
}
BENCHMARK(BM_Histogram_1M)->Unit(benchmark::kMillisecond);

// One page step of the list, drawn: what a user feels when scrolling.
static void BM_DataListScrollPage(benchmark::State &state) {
    bench::Quiet quiet;
    bench::MakeDataSet(1000000);
    fm::frmSource list;
    list.resize(700, 500);
    list.ViewDataSource(false);
    list.show();
    int64_t line = 0;
    for (auto _ : state) {
        line = (line + 997 * 31) % 1000000;
        list.txtSource->SelectLine(line);
        benchmark::DoNotOptimize(list.txtSource->viewport()->grab());
    }
}
BENCHMARK(BM_DataListScrollPage)->Unit(benchmark::kMillisecond);
