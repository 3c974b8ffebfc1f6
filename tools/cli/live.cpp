// Live mode without a window: each sample on a line, and the real-time log as the
// viewer leaves it.
#include "commands.h"
#include "core/data_set.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "link/link_state.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "link/transaction.h"
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
        return kFailed;
    }
    // Until enough samples came, or polling stopped (a poll met a command in flight).
    while (Live().RTCount < count && Shared().LiveTimer != 0) RunEventsFor(50);
    WaitForIdleLink();
    RealTimeView(QStringLiteral("Stop"));
    SetLiveDisplay(nullptr);
    DropCommunication();
    return Live().RTCount >= count ? kOk : kFailed;
}
}  // namespace fm::cli
