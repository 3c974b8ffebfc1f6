// Live mode over a day of samples (28,800 at one every 3 s): the cost of one sample
// (conversion, statistics, log line, drawing, strip chart point) must stay flat, and
// the strip chart must redraw quickly when it holds the whole day.
#include "charts/widgets/chart_control.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/host.h"
#include "link/packet.h"
#include "realtime/live_intake.h"
#include "realtime/live_record.h"
#include "realtime/realtime_log.h"
#include "realtime/widgets/frm_view.h"

#include <benchmark/benchmark.h>
#include <qcustomplot.h>
#include <QTemporaryDir>
#include <cmath>

namespace {
struct LiveBench {
    fm::QuietHost host;
    QTemporaryDir dir;
    fm::frmView view;
    int k = 0;
    LiveBench() {
        fm::SetHost(&host);
        fm::InitVariabili();
        fm::SetWritableDir(dir.path());
        fm::SetRealTimeLogPath(QString());
        view.resize(900, 620);
        view.show();
        fm::OpenLastLog();
        fm::Live().RTCount = 0;
    }
    ~LiveBench() {
        fm::CloseLastLog();
        fm::SetHost(nullptr);
    }
    void Feed() {
        const int x = 300 + int(200 * std::sin(k / 50.0)), y = 200, z = 90 + (k % 7);
        ++k;
        QByteArray &rx = fm::RxBuffer();
        rx = QByteArray::fromRawData("\x3C\x00\x09\x02\x00\x00\x00\x00\x00\x00\x00\x00\x00", 13);
        rx.detach();
        rx[4] = char(x >> 8), rx[5] = char(x), rx[6] = char(y >> 8), rx[7] = char(y), rx[8] = char(z >> 8),
        rx[9] = char(z);
        fm::SplitDataReadData();
    }
};
}  // namespace

static void BM_LiveSampleAt(benchmark::State &state) {
    LiveBench b;
    for (int64_t i = 1; i < state.range(0); ++i) b.Feed();
    // Each iteration is the next sample, at about this count, with the drawing painted;
    // the strip chart's own redraw is measured below.
    for (auto _ : state) {
        b.Feed();
        benchmark::DoNotOptimize(b.view.Disegno->grab());
    }
    state.counters["count"] = fm::Live().RTCount;
}
BENCHMARK(BM_LiveSampleAt)->Arg(10)->Arg(28800)->Iterations(200)->Unit(benchmark::kMicrosecond);

static void BM_StripChartRedraw(benchmark::State &state) {
    LiveBench b;
    for (int64_t i = 0; i < state.range(0); ++i) b.Feed();
    QCustomPlot *plot = b.view.teeRealEvolution->Plot();
    for (auto _ : state) plot->replot(QCustomPlot::rpImmediateRefresh);
}
BENCHMARK(BM_StripChartRedraw)->Arg(28800)->Unit(benchmark::kMillisecond);
