// Live mode without a window: each sample on a line, and the real-time log as the
// viewer leaves it.
#include "commands.h"
#include "core/data_set.h"
#include "core/interrupts.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "link/link_state.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "link/transaction.h"
#include "files/log_recovery.h"
#include "realtime/live_display.h"
#include "realtime/live_intake.h"
#include "realtime/live_mode.h"
#include "realtime/live_record.h"
#include "realtime/realtime_log.h"
#include "realtime/vector_geometry.h"
#include "shell/link_handlers.h"

#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <cmath>
#include <cstdio>

namespace fm::cli {
namespace {
// The figures of the live view, a line for each sample.
class PrintedView : public LiveDisplay {
public:
    bool Active() const override { return true; }
    void ShowInfo(const InfoTexts &) override {}
    void ClearChart() override {}
    void SetButtons(bool) override {}
    void SetStatePicture(bool) override {}
    void AggiornaDisegno(float x, float y, float z, bool) override {
        const SharedState &s = Shared();
        const InfoTexts t = BuildRTInfo();
        QString line = t.count + QStringLiteral("  ") + t.stop;
        int axis = 0;
        for (float v : {x, y, z})
            line += QStringLiteral("  ") + AxisMeter(axis++, v, s.LowRange, s.HighRange).text;
        const double r = std::sqrt(double(x) * x + double(y) * y + double(z) * z);  // as the viewer has it
        line += QStringLiteral("  ") + ResultantMeter(r, s.LowRange, s.HighRange).text;
        line += QStringLiteral("  [") + t.values[0] + QStringLiteral(" / ") + t.values[1] +
                QStringLiteral(" / ") + t.values[2] + QLatin1Char(']');
        std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
        std::fflush(stdout);
    }
};

void RunEventsFor(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}
}  // namespace

int LiveRun(const QString &port, int count, const QString &out) {
    if (!out.isEmpty()) SetRealTimeLogPath(out);
    InstallLinkHandlers();
    Seriale().SetDeviceOverride(port);
    if (!SelectPort(0) || !InitCommunication()) return kFailed;
    if (QFile::exists(RealTimeLogPath()) && !Host().MessBox(ResString(35), {}, 2, 0)) return kFailed;
    PrintedView view;
    SetLiveDisplay(&view);
    std::fprintf(stderr, "%s: %s\n", qPrintable(ResString(4075)), qPrintable(RealTimeLogPath()));
    if (!RealTimeView(QStringLiteral("Start"))) {
        SetLiveDisplay(nullptr);
        DropCommunication();
        return kFailed;
    }
    // Ctrl+C and the like stop as the Stop button does: the log keeps its count.
    WatchInterrupts([](int) {});
    // Until enough samples came, polling stopped (the logger was lost, the log could not
    // be written) or the run was interrupted.
    while (Live().RTCount < count && Shared().LiveTimer != 0 && !InterruptSignal()) RunEventsFor(50);
    const bool lost = Shared().LiveTimer == 0 && !Live().LogFailed && Live().RTCount < count;
    WaitForIdleLink();
    if (Shared().LiveTimer != 0 || Shared().RealTimeLogFile > 0) RealTimeView(QStringLiteral("Stop"));
    SetLiveDisplay(nullptr);
    DropCommunication();
    const auto lines = qlonglong(Live().RealTimeLines);
    if (const int sig = InterruptSignal()) {
        std::fprintf(stderr, "%s\n", qPrintable(ResString(4404).arg(lines)));
        return 128 + sig;
    }
    if (lost) std::fprintf(stderr, "%s\n", qPrintable(ResString(4403).arg(lines)));
    return Live().RTCount >= count && !Live().LogFailed ? kOk : kFailed;
}

int Recover(const QString &file) {
    const auto lines = UnclosedLogLines(file);
    if (!lines) {
        std::fprintf(stderr, "fluxmere-cli: %s\n", qPrintable(ResString(4406)));
        return kFailed;
    }
    const auto written = RecoverLog(file);
    if (!written) return kFailed;
    std::printf("%s\n", qPrintable(ResString(4402).arg(qlonglong(*written))));
    return kOk;
}
}  // namespace fm::cli
