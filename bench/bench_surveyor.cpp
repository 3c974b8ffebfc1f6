// Unpacking one full Surveyor block, and a paced import of 50 blocks from the simulator.
#include "acquisition/surveyor.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/host.h"
#include "link/serial_port.h"
#include "link/supervision.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

namespace {
constexpr int kBlocks = 50;

class Quiet : public fm::QuietHost {
public:
    Quiet() { fm::SetHost(this); }
    ~Quiet() override { fm::SetHost(nullptr); }
    bool MessBox(const QString &, const QString &, int, int) override { return false; }
    void DoEvents() override { QCoreApplication::processEvents(); }
};

QByteArray FullBlock() {
    QByteArray b(fm::kSurveyorBlockSize, '\0');
    b[0] = char(1000 & 0xFF);
    b[1] = char(1000 >> 8);
    b[2] = 1;
    b[6] = 8;
    b[7] = 3;
    b[8] = 3;
    b[9] = char(2026 & 0xFF);
    b[10] = char(2026 >> 8);
    for (int k = 0; k < 4000; ++k) b[11 + k] = char(k * 37);
    return b;
}

double CpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
           double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}
}  // namespace

static void BM_UnpackSurveyorBlock(benchmark::State &state) {
    Quiet quiet;
    fm::InitVariabili();
    const QByteArray block = FullBlock();
    for (auto _ : state) {
        fm::SurveyorBlock() = block;
        fm::SpacchettaBlocco(0);
    }
    state.counters["records"] = fm::Data().DataCount;
}
BENCHMARK(BM_UnpackSurveyorBlock)->Unit(benchmark::kMicrosecond);

// The wire time is the six-byte count and 50 blocks of 4011 bytes at 1920 bytes/s: 104.46 s.
static void BM_SurveyorImportPaced(benchmark::State &state) {
    Quiet quiet;
    QTemporaryDir dir;
    fm::SetWritableDir(dir.path());
    fm::InitVariabili();
    QProcess sim;
    sim.start(QCoreApplication::applicationDirPath() + QStringLiteral("/surveyor-sim"),
              {QStringLiteral("--blocks"), QString::number(kBlocks), QStringLiteral("--link"),
               dir.filePath(QStringLiteral("com1"))});
    if (!sim.waitForReadyRead(5000) || !fm::SelectPort(0)) {
        state.SkipWithError("no simulator beside the benchmark");
        return;
    }
    const double wire = (6.0 + kBlocks * double(fm::kSurveyorBlockSize)) / 1920.0;
    for (auto _ : state) {
        const double cpu0 = CpuSeconds();
        QElapsedTimer wall;
        wall.start();
        if (!fm::DownloadSurveyorData()) state.SkipWithError("import failed");
        const double seconds = double(wall.elapsed()) / 1000;
        state.counters["wall_s"] = seconds;
        state.counters["over_wire_s"] = seconds - wire;
        state.counters["cpu_percent"] = 100 * (CpuSeconds() - cpu0) / seconds;
        state.counters["samples"] = fm::Data().DataCount;
    }
    fm::Seriale().SetPortOpen(false);
    sim.terminate();
    sim.waitForFinished(2000);
    fm::SetWritableDir(QString());
}
BENCHMARK(BM_SurveyorImportPaced)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();
