#include "realtime/live_mode.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "link/operations.h"
#include "link/supervision.h"
#include "link/timers.h"
#include "link/transaction.h"
#include "realtime/live_display.h"
#include "realtime/live_intake.h"
#include "realtime/live_record.h"
#include "realtime/realtime_log.h"

#include <QEventLoop>
#include <QTimer>

namespace fm {
namespace {
int g_periodMs = 3000;
constexpr int kKeepAliveMs = 5000;
}  // namespace

void SetLivePeriodForTests(int ms) {
    g_periodMs = ms;
}

void ViewTimer() {
    TrapVoid("ViewTimer", [] { SendCommand(2, false, false, 2000); });
}

void WaitForIdleLink() {
    // Sleeps between looks: the reply or its time-out comes as an event.
    while (Shared().CurrentCommand != QLatin1String("254")) {
        QEventLoop pause;
        QTimer::singleShot(20, &pause, &QEventLoop::quit);
        pause.exec();
    }
}

bool RealTimeView(const QString &action) {
    return Trap("RealTimeView", false, [&] {
        SharedState &s = Shared();
        LiveRecord &rt = Live();
        LiveDisplay *display = TheLiveDisplay();
        if (action == QLatin1String("Start")) {
            if (!SendCommand(3, true, true, 2000)) {
                if (display) display->SetButtons(false);
                return false;
            }
            for (int b : {11, 10, 7}) Host().SetButtonEnabled(b, false);
            if (ReadID()) {
                // The data set keeps its fixed-width fields; the live record the trimmed codes.
                rt.RTShortID = Data().ShortID.trimmed();
                rt.RTLongID = Data().LongID.trimmed();
            } else {
                s.LowRange = 5.0f;  // for the rest of the run, live view only
                rt.RTShortID = QStringLiteral("(Nessun ID)");
                rt.RTLongID = QStringLiteral("-");
            }
            rt.RTCount = 0;
            rt.LogFailed = false;
            if (display) display->ClearChart();
            if (!OpenLastLog()) {
                // Without its log live mode would measure into nothing: it does not start.
                for (int b : {11, 10, 7}) Host().SetButtonEnabled(b, true);
                if (display) display->SetButtons(false);
                return false;
            }
            KillTimer(s.KeepAliveTimer);
            s.KeepAliveTimer = 0;
            s.LiveTimer = SetTimer(g_periodMs, [] { ViewTimer(); });
            if (display) display->SetStatePicture(true);
            rt.RTShowInfo = true;
            UpdateRTInfo();
            return true;
        }
        if (action == QLatin1String("Stop")) {
            KillTimer(s.LiveTimer);
            s.LiveTimer = 0;
            for (int b : {11, 10, 7}) Host().SetButtonEnabled(b, true);
            CloseLastLog();
            if (display) {
                display->SetStatePicture(false);
                display->SetButtons(false);
            }
            if (s.CommOpen) s.KeepAliveTimer = SetTimer(kKeepAliveMs, [] { KeepAlive(); });
            return false;
        }
        return false;
    });
}
}  // namespace fm
