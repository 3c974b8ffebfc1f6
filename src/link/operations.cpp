#include "link/operations.h"

#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/regional.h"
#include "link/link_state.h"
#include "link/packet.h"
#include "link/supervision.h"
#include "link/timers.h"
#include "link/transaction.h"

namespace fm {

int ToBcd(int value) {
    int out = 0, shift = 0;
    do {
        out |= (value % 10) << shift;
        value /= 10;
        shift += 4;
    } while (value > 0);
    return out;
}
int FromBcd(uint8_t byte) { return (byte >> 4) * 10 + (byte & 0x0F); }

int WireYear(int yearBits, int presentYear) {
    const int first = presentYear - 2;
    return first + (((yearBits & 3) - (first - 2012)) % 4 + 4) % 4;
}

int PresentYear() { return DateToDateTime(Now()).date().year(); }

std::array<uint8_t, 5> EncodeWireDate(const QDateTime &dt, int presentYear) {
    const int year = dt.date().year();
    const int bits = ((year - 2012) % 4 + 4) % 4;
    if (WireYear(bits, presentYear) != year) Raise(err::InvalidCall, QStringLiteral("Date out of the logger's range"));
    const QTime t = dt.time();
    return {uint8_t(ToBcd(t.second())), uint8_t(ToBcd(t.minute())), uint8_t(ToBcd(t.hour())),
            uint8_t(ToBcd(dt.date().day()) + bits * 64), uint8_t(ToBcd(dt.date().month()))};
}

bool IsBlankWireDate(const uint8_t *b) { return (b[3] & 0x3F) == 0 && (b[4] & 0x1F) == 0 && (b[3] & 0xC0) == 0; }

double DecodeWireDate(const uint8_t *b) {
    const int year = WireYear(b[3] >> 6, PresentYear());
    const int month = FromBcd(b[4] & 0x1F);
    const int day = FromBcd(b[3] & 0x3F);
    double d = DateFromParts(year, 1, 1);
    d = DateAdd(QStringLiteral("m"), month - 1, d);
    d = DateAdd(QStringLiteral("d"), day - 1, d);
    const int seconds = FromBcd(b[2]) * 3600 + FromBcd(b[1]) * 60 + FromBcd(b[0]);
    return DateAdd(QStringLiteral("s"), seconds, d);
}

bool ReadID() {
    CommandPacket().DataLength = 0;
    return SendCommand(7, true, false, kReplyTimeoutMs);
}

bool WriteID() {
    return Trap("WriteID", false, [] {
        TCommandPacket &p = CommandPacket();
        // The code page of the upload's header, so both read the same codes.
        const QByteArray ids = ToCp1252(FixedText(Data().ShortID, 16) + FixedText(Data().LongID, 48));
        for (int i = 0; i < 64; ++i) p.Data[size_t(i)] = uint8_t(ids.at(i));
        p.DataLength = 64;
        if (!SendCommand(8, true, false, kReplyTimeoutMs)) {
            Host().MessBox(ResString(18), {}, -1, -1);
            return false;
        }
        return true;
    });
}

bool StopMonitor() {
    CommandPacket().DataLength = 0;
    return SendCommand(14, true, false, kReplyTimeoutMs);
}

bool StartMonitoraggio(StartProgress &progress, std::optional<QDateTime> now) {
    SharedState &s = Shared();
    bool shown = false;
    int failed = 0;
    bool started = Trap("StartMonitoraggio", false, [&] {
        KillTimer(s.KeepAliveTimer);
        s.KeepAliveTimer = 0;
        progress.Begin();
        shown = true;
        progress.SetState(0);
        const QDateTime present = now.value_or(DateToDateTime(Now()));
        const auto wire = EncodeWireDate(present, present.date().year());
        TCommandPacket &p = CommandPacket();
        for (int i = 0; i < 5; ++i) p.Data[size_t(i)] = wire[size_t(i)];
        p.DataLength = 5;
        if (!SendCommand(11, true, false, kReplyTimeoutMs)) return false;
        failed = 1;
        progress.SetState(1);
        for (int i = 0; i < 10; ++i) {
            const int16_t v = Link().MonitorImage[size_t(i)];
            if (v < 0 || v > 0xFF) Raise(err::Overflow);  // a step over 99 or an address past 65535
            p.Data[size_t(i)] = uint8_t(v);
        }
        p.DataLength = 10;
        if (!SendCommand(12, true, false, kReplyTimeoutMs)) return false;
        progress.SetState(2);
        failed = 3;
        progress.SetState(3);
        p.DataLength = 0;
        return SendCommand(13, true, false, kReplyTimeoutMs);
    });
    if (started) {
        progress.SetState(4);
        progress.WaitForClose();
        // The logger works alone now; the next command brings the link up again.
        DropCommunication();
        progress.End(true);
        return true;
    }
    // A refusal, a lost reply and a fault the error box has shown end alike: the
    // supervision runs again while the link is up, and the user closes the page.
    if (s.CommOpen && s.KeepAliveTimer == 0) s.KeepAliveTimer = SetTimer(5000, [] { KeepAlive(); });
    if (shown) {
        progress.MarkFailed(failed);
        progress.WaitForClose();
        progress.End(false);
    }
    return false;
}

} // namespace fm
