#include "acquisition/upload.h"

#include "analysis/statistics.h"
#include "analysis/warnings.h"
#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "link/operations.h"
#include "link/packet.h"
#include "link/supervision.h"
#include "link/transaction.h"

#include <cmath>

namespace fm {
namespace {
const uint8_t kSignature[3] = {0x52, 0x4F, 0x42};

// The value of one stored reading, rounded to two decimals.
float Reading(uint8_t high, uint8_t low, bool highRange) {
    if (high > 0x7F) Raise(err::Overflow);
    const int raw = high * 256 + low;
    if (!highRange && raw <= 3) return 0.0f;
    const double full = highRange ? double(Shared().HighRange) : double(Shared().StoredLowRange);
    return float(RoundHalfEven(raw * full / 1024.0, 2));
}

int32_t Samples(int address) { return CLng((address - 96) / 7.0); }
} // namespace

bool UploadData() {
    return Trap("UploadData", false, [] {
        SharedState &s = Shared();
        if (!s.CommOpen && !InitCommunication()) return false;
        if (s.MonitorState == 1) {
            if (!Host().MessBox(ResString(27), {}, 1, 0)) return false;
            if (!StopMonitor()) {
                Host().MessBox(QStringLiteral("Si è verificato un problema nel fermare il monitoraggio."), {}, 2, -1);
                return false;
            }
            s.MonitorState = 0;
            Host().UpdateInfo();
        }
        CommandPacket().DataLength = 0;
        if (!SendCommand(4, true, false, kReplyTimeoutMs)) return false;
        Data().DataFile.clear();
        Data().DataIsCsv = false;
        Host().UpdateInfo();
        EnableDataButtons();
        return true;
    });
}

bool SplitUploadData() {
    const bool ok = Trap("SplitUploadData", false, [] {
        const QByteArray &rx = RxBuffer();
        const auto *b = reinterpret_cast<const uint8_t *>(rx.constData());
        if (RxLength() < 100 || b[33] != kSignature[0] || b[34] != kSignature[1] || b[35] != kSignature[2]) {
            Host().MessBox(ResString(3032), {}, -1, -1);
            return false;
        }
        MeasurementData &d = Data();
        d.DataStopCode = int16_t(b[24]);
        d.DataSource = QStringLiteral("Upload");
        d.SetShortID(FromCp1252(rx.constData() + 36, 16));
        d.SetLongID(FromCp1252(rx.constData() + 52, 48));
        const uint8_t *start = (b[13] & 1) ? b + 14 : b + 6;
        d.DataStart = DecodeWireDate(start);
        if (IsBlankWireDate(start)) {
            Host().SetBusy(false);
            d.DataStart = Host().AskDate();
            Host().SetBusy(true);
        }
        const int32_t n = Samples(b[4] * 256 + b[5]);
        if (n <= 0) {
            Host().MessBox(ResString(3032), {}, -1, -1);
            return false;
        }
        const int unit = b[11] & 7;
        if (unit < 2 || unit > 5) Raise(err::Subscript);
        // What the frame holds bounds the samples: a count beyond it is a fault, not a read past the end.
        if (RxLength() < 100 + qint64(n) * 7 + 2) Raise(err::Subscript);
        d.DataCount = n;
        d.DataStepUnit = Shared().UnitLetters[size_t(unit)];
        d.DataStep = FromBcd(b[12]);
        d.DataPresent = true;
        d.DataSaved = false;
        const int32_t m = std::max(0, Samples(b[19] * 256 + b[20]));
        d.DataStop = m == 0 ? StopPlaceholder1() : DateAdd(d.DataStepUnit, double(m) * d.DataStep, d.DataStart);
        d.DataEnd = DateAdd(d.DataStepUnit, double(n) * d.DataStep, d.DataStart);
        d.SizeArrays(n);
        d.DataDateCount = n;
        Host().WaitText(ResString(39));
        for (int32_t i = 1; i <= n; ++i) {
            if (i % 20 == 0) Host().WaitAnimate(1);
            const uint8_t *k = b + 100 + size_t(i - 1) * 7;
            const float x = Reading(k[0], k[1], k[6] & 1);
            const float y = Reading(k[2], k[3], k[6] & 2);
            const float z = Reading(k[4], k[5], k[6] & 4);
            d.DataX[size_t(i)] = x;
            d.DataY[size_t(i)] = y;
            d.DataZ[size_t(i)] = z;
            const double v = RoundHalfEven(std::sqrt(double(x) * x + double(y) * y + double(z) * z), 2);
            d.DataValue[size_t(i)] = v;
            d.SortedValue[size_t(i)] = v;
            d.SortedIndex[size_t(i)] = i;
        }
        CalculateStats(QStringLiteral("Data"));
        CalculateMediana();
        GenerateWarnings();
        ShowWarningsIfWanted();
        Host().WaitHide();
        Host().DoEvents();
        return true;
    });
    if (!ok) Host().WaitHide();
    return ok;
}

} // namespace fm
