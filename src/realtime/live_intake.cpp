#include "realtime/live_intake.h"

#include "analysis/statistics.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/regional.h"
#include "link/packet.h"
#include "realtime/live_display.h"
#include "realtime/live_mode.h"
#include "realtime/live_record.h"
#include "realtime/realtime_log.h"

#include <cmath>

namespace fm {
namespace {
LiveDisplay *g_display = nullptr;
}  // namespace

void SetLiveDisplay(LiveDisplay *display) {
    g_display = display;
}
LiveDisplay *TheLiveDisplay() {
    return g_display;
}

LiveReading ConvertLiveReply(const uint8_t *frame, double lowRange, double highRange) {
    LiveReading r;
    r.batteryFlag = (frame[10] & 0x80) != 0;
    uint8_t flags = frame[10];
    for (int a = 0; a < 3; ++a) {
        const uint8_t hi = frame[4 + 2 * a], lo = frame[5 + 2 * a];
        const double raw = hi * 256.0 + lo;
        double v = 0;
        if (flags & 1)
            v = RoundHalfEven(raw * highRange / 1024, 2);
        else if (hi == 0 && lo <= 3)
            v = 0;  // the lowest counts read as no field
        else
            v = RoundHalfEven(raw * lowRange / 1024, 2);
        r.sample[size_t(a)] = float(v);
        flags >>= 1;
    }
    const double x = r.sample[0], y = r.sample[1], z = r.sample[2];
    r.sample[3] = float(RoundHalfEven(std::sqrt(x * x + y * y + z * z), 2));
    r.flagsAfter = flags;
    return r;
}

void SplitDataReadData() {
    TrapVoid("SplitDataReadData", [] {
        QByteArray &rx = RxBuffer();
        if (rx.size() < 13) Raise(err::Subscript);
        auto *frame = reinterpret_cast<uint8_t *>(rx.data());
        const LiveReading r = ConvertLiveReply(frame, Shared().LowRange, Shared().HighRange);
        Host().SetBattImage(r.batteryFlag ? 2 : 1);
        LiveRecord &rt = Live();
        ++rt.RTCount;
        rt.Grow();
        frame[10] = r.flagsAfter;
        rt.RTSample = r.sample;
        const size_t k = size_t(rt.RTCount);
        rt.RTX[k] = r.sample[0];
        rt.RTY[k] = r.sample[1];
        rt.RTZ[k] = r.sample[2];
        rt.RTValue[k] = r.sample[3];
        CalculateStats(QStringLiteral("RT"), {rt.RTValue.data(), rt.RTValue.size(), rt.RTCount,
                                              &rt.RTMax, &rt.RTMin, &rt.RTMean});
        UpdateRTInfo();
        // The log being open is the condition of the display.
        if (Shared().RealTimeLogFile <= 0) return;
        if (!AppendLiveLine(r.sample[0], r.sample[1], r.sample[2])) {
            // A full disk: measuring on without a log would lose every later sample.
            rt.LogFailed = true;
            RealTimeView(QStringLiteral("Stop"));
            Host().MessBox(ResString(4405).arg(rt.RealTimeLines), {}, 0, 1);
            return;
        }
        if (LiveDisplay *d = TheLiveDisplay())
            d->AggiornaDisegno(r.sample[0], r.sample[1], r.sample[2], true);
    });
}

InfoTexts BuildRTInfo() {
    const LiveRecord &rt = Live();
    InfoTexts t = BuildInfo();
    t.live = true;
    t.shortId = rt.RTShortID.trimmed().isEmpty() ? ResString(3021) : rt.RTShortID.trimmed();
    t.longId = rt.RTLongID.trimmed().isEmpty() ? ResString(3021) : rt.RTLongID.trimmed();
    if (rt.RTShowInfo) {
        t.step = QString::number(rt.RTStep) + QLatin1Char(' ') + StepUnitWord(rt.RTStepUnit);
        t.source = rt.RTSource;
        t.count = QString::number(rt.RTCount);
        t.start = GeneralDate(rt.RTStart);
        t.stop = GeneralDate(rt.SampleDate(rt.RTCount));
        t.values[0] = Microtesla(rt.RTMin);
        t.values[1] = Microtesla(rt.RTMax);
        t.values[2] = Microtesla(rt.RTMean);
    } else {
        const QString none = QStringLiteral("---");
        t.step = t.source = t.count = t.start = t.stop = none;
        t.values[0] = t.values[1] = t.values[2] = none;
    }
    return t;
}

void UpdateRTInfo() {
    TrapVoid("UpdateRTInfo", [] {
        LiveDisplay *d = TheLiveDisplay();
        if (d && d->Active()) d->ShowInfo(BuildRTInfo());
    });
}
}  // namespace fm
