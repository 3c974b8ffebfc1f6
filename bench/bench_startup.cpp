// Start-up to the main window, without the splash's 3-second wait.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"

#include <QApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

static void BM_StartUpToMainWindow(benchmark::State &state) {
    QTemporaryDir dir;
    fm::SetWritableDir(dir.path());
    for (auto _ : state) {
        if (!fm::StartUp(0, {})) state.SkipWithError("start-up stopped");
        QApplication::processEvents();
        state.PauseTiming();
        fm::Data().DataSaved = true;
        fm::ShutDown(fm::MainForm());
        delete fm::MainForm();
        state.ResumeTiming();
    }
    fm::SetWritableDir(QString());
}
BENCHMARK(BM_StartUpToMainWindow)->Unit(benchmark::kMillisecond)->Iterations(10);
