#include "link/operations.h"

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

std::array<uint8_t, 5> EncodeWireDate(const QDateTime &dt) {
    const int year = dt.date().year();
    if (year < 2012 || year > 2015) Raise(err::InvalidCall, QStringLiteral("Date out of the logger's range"));
    const QTime t = dt.time();
    return {uint8_t(ToBcd(t.second())), uint8_t(ToBcd(t.minute())), uint8_t(ToBcd(t.hour())),
            uint8_t(ToBcd(dt.date().day()) + (year - 2012) * 64), uint8_t(ToBcd(dt.date().month()))};
}

bool IsBlankWireDate(const uint8_t *b) { return (b[3] & 0x3F) == 0 && (b[4] & 0x1F) == 0 && (b[3] & 0xC0) == 0; }

double DecodeWireDate(const uint8_t *b) {
    const int year = (b[3] & 0xC0) / 64 + 2012;
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
        const QString ids = FixedText(Data().ShortID, 16) + FixedText(Data().LongID, 48);
        for (int i = 0; i < 64; ++i) {
            const char16_t c = ids[i].unicode();
            p.Data[size_t(i)] = c < 256 ? uint8_t(c) : uint8_t('?');
        }
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
    return Trap("StartMonitoraggio", false, [&] {
        SharedState &s = Shared();
        KillTimer(s.KeepAliveTimer);
        s.KeepAliveTimer = 0;
        progress.Begin();
        int failed = 0;
        progress.SetState(0);
        const auto wire = EncodeWireDate(now.value_or(QDateTime::currentDateTime()));
        TCommandPacket &p = CommandPacket();
        bool ok = false;
        for (int i = 0; i < 5; ++i) p.Data[size_t(i)] = wire[size_t(i)];
        p.DataLength = 5;
        if (SendCommand(11, true, false, kReplyTimeoutMs)) {
            failed = 1;
            progress.SetState(1);
            for (int i = 0; i < 10; ++i) {
                const int16_t v = Link().MonitorImage[size_t(i)];
                if (v < 0 || v > 0xFF) Raise(err::Overflow);  // a step over 99 or an address past 65535
                p.Data[size_t(i)] = uint8_t(v);
            }
            p.DataLength = 10;
            if (SendCommand(12, true, false, kReplyTimeoutMs)) {
                progress.SetState(2);
                failed = 3;
                progress.SetState(3);
                p.DataLength = 0;
                ok = SendCommand(13, true, false, kReplyTimeoutMs);
            }
        }
        if (ok) {
            progress.SetState(4);
            progress.WaitForClose();
            // The logger works alone now; the next command brings the link up again.
            DropCommunication();
            progress.End(true);
            return true;
        }
        if (s.CommOpen) {
            s.KeepAliveTimer = SetTimer(5000, [] { KeepAlive(); });
            if (s.KeepAliveTimer == 0) return false;
        }
        progress.MarkFailed(failed);
        progress.WaitForClose();
        progress.End(false);
        return false;
    });
}

} // namespace fm
