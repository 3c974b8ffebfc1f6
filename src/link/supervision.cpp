#include "link/supervision.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "link/link_state.h"
#include "link/serial_port.h"
#include "link/status_decoding.h"
#include "link/timers.h"
#include "link/transaction.h"

namespace fm {
namespace {
constexpr int kKeepAliveMs = 5000;

void StartKeepAlive() { Shared().KeepAliveTimer = SetTimer(kKeepAliveMs, [] { KeepAlive(); }); }
} // namespace

bool SelectPort(int index) {
    SerialPort &port = Seriale();
    try {
        if (port.PortOpen()) port.SetPortOpen(false);
        port.SetCommPort(index + 1);
        port.SetPortOpen(true);
        Host().SetCommStatus(5, ResString(3042));
        return true;
    } catch (const Fault &f) {
        // The system's cause after the advice: a port the user may not open says so.
        Host().MessBox(ResString(6) + QStringLiteral("\r\n") + f.description, {}, -1, -1);
        Host().SetCommStatus(3, ResString(5));
        return false;
    }
}

void MonitorStateFromSettings() {
    Shared().MonitorState = int16_t(DecodeStatus(Link().MonitorSettings[16], Link().MonitorSettings[18]).monitorState);
}

bool InitCommunication() {
    return Trap("InitCommunication", false, [] {
        SharedState &s = Shared();
        if (!Seriale().PortOpen()) {
            Host().MessBox(ResString(17), {}, -1, -1);
            return false;
        }
        if (!Host().MessBox(ResString(19), {}, 2, 2)) return false;
        // Set before any command goes out, so SendCommand does not come back here.
        s.CommOpen = true;
        Host().SetButtonEnabled(6, false);
        if (!SendCommand(3, true, false, kReplyTimeoutMs)) {
            Host().MessBox(ResString(20), {}, -1, -1);
            s.CommOpen = false;
            Host().SetButtonEnabled(6, true);
            return false;
        }
        if (SendCommand(10, true, false, kReplyTimeoutMs)) {
            MonitorStateFromSettings();
            Host().UpdateInfo();
        }
        StartKeepAlive();
        if (s.KeepAliveTimer == 0) return false;
        Host().UpdateInfo();
        return true;
    });
}

void DropCommunication() {
    SharedState &s = Shared();
    s.CommOpen = false;
    Host().SetButtonEnabled(6, true);
    KillTimer(s.KeepAliveTimer);
    s.KeepAliveTimer = 0;
    KillTimer(s.LiveTimer);
    s.LiveTimer = 0;
    Host().UpdateInfo();
}

void KeepAlive() {
    if (Shared().CurrentCommand != QLatin1String("254")) return;  // a transaction is in flight
    SendCommand(3, false, false, kReplyTimeoutMs);
}

void TimeoutFunction(int why) {
    SharedState &s = Shared();
    KillTimer(s.TimeoutTimer);
    s.TimeoutTimer = 0;
    ++s.FailCount;
    if (s.FailCount >= 3) DropCommunication();
    Seriale().SetRThreshold(0);
    Seriale().ClearInBuffer();
    s.CurrentCommand = QStringLiteral("254");
    Host().SetCommStatus(4, ResString(why));
}

} // namespace fm
