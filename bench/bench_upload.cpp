// Unpacking a full upload, and a full upload from the simulator at the line rate.
#include "acquisition/upload.h"
#include "shell/link_handlers.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/host.h"
#include "link/packet.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "link/transaction.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <sys/resource.h>

namespace {
constexpr int kFullSamples = 9348;  // the most one frame's 16-bit length can carry

struct Quiet {
    class Host : public fm::QuietHost {
    public:
        bool MessBox(const QString &, const QString &, int, int mode) override { return mode != 0; }
    } host;
    Quiet() { fm::SetHost(&host); }
    ~Quiet() { fm::SetHost(nullptr); }
};

QByteArray FullUploadFrame() {
    QByteArray m(96, '\0');
    const int end = 96 + kFullSamples * 7;
    m[0] = char(end >> 8);
    m[1] = char(end & 0xFF);
    m[3] = char(0x03);  // 03:00:00 on 3 March 2014
    m[5] = char(0x43);
    m[6] = char(0x03);
    m[7] = 3;
    m[8] = char(0x10);
    m[29] = 'R';
    m[30] = 'O';
    m[31] = 'B';
    for (int i = 0; i < kFullSamples; ++i) {
        const int r = (i * 37) % 2000;
        for (int a = 0; a < 3; ++a) m.append(char(r >> 8)).append(char(r & 0xFF));
        m.append(char(i % 8));
    }
    QByteArray f;
    f.append(char(0x3C)).append(char((m.size() + 3) >> 8)).append(char((m.size() + 3) & 0xFF)).append(char(4));
    f.append(m);
    const uint16_t crc = fm::Crc16(reinterpret_cast<const uint8_t *>(f.constData()), size_t(f.size()));
    f.append(char(crc >> 8)).append(char(crc & 0xFF));
    return f;
}

double CpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) + double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}
} // namespace

static void BM_UnpackFullUpload(benchmark::State &state) {
    Quiet quiet;
    fm::InitVariabili();
    const QByteArray frame = FullUploadFrame();
    for (auto _ : state) {
        fm::RxBuffer() = frame;
        fm::RxLength() = int32_t(frame.size());
        if (!fm::AnalyzePacket() || !fm::SplitUploadData()) state.SkipWithError("refused");
    }
    state.counters["samples"] = fm::Data().DataCount;
    state.counters["frame_bytes"] = double(frame.size());
}
BENCHMARK(BM_UnpackFullUpload)->Unit(benchmark::kMillisecond);

// The wire time of 65538 bytes at 1920 bytes/s is 34.13 s; the reception then waits 0.7 s of silence.
static void BM_UploadPacedFullMemory(benchmark::State &state) {
    Quiet quiet;
    QTemporaryDir dir;
    fm::SetWritableDir(dir.path());
    fm::InitVariabili();
    fm::InstallLinkHandlers();
    QProcess sim;
    sim.start(QCoreApplication::applicationDirPath() + QStringLiteral("/ql540-sim"),
              {QStringLiteral("--memory"), QStringLiteral("65536"), QStringLiteral("--link"), dir.filePath(QStringLiteral("com1"))});
    if (!sim.waitForReadyRead(5000)) {
        state.SkipWithError("no simulator beside the benchmark");
        return;
    }
    if (!fm::SelectPort(0) || !fm::InitCommunication()) {
        state.SkipWithError("no link");
        return;
    }
    for (auto _ : state) {
        const double cpu0 = CpuSeconds();
        QElapsedTimer wall;
        wall.start();
        if (!fm::UploadData()) state.SkipWithError("upload failed");
        const double seconds = double(wall.elapsed()) / 1000;
        state.counters["wall_s"] = seconds;
        state.counters["over_wire_s"] = seconds - 65538.0 / 1920.0 - 0.7;
        state.counters["cpu_percent"] = 100 * (CpuSeconds() - cpu0) / seconds;
        state.counters["samples"] = fm::Data().DataCount;
    }
    fm::DropCommunication();
    fm::Seriale().SetPortOpen(false);
    sim.terminate();
    sim.waitForFinished(2000);
    fm::SetWritableDir(QString());
}
BENCHMARK(BM_UploadPacedFullMemory)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();
