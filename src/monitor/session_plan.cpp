#include "monitor/session_plan.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "link/link_state.h"
#include "link/operations.h"
#include "shell/info_model.h"

namespace fm {

int UnitCode(const QString &unit) {
    for (int code = 2; code <= 5; ++code)
        if (Shared().UnitLetters[size_t(code)] == unit && !unit.isEmpty()) return code;
    return 0;
}

bool ProgramSession(const SessionRequest &r, StartProgress &progress) {
    return Trap("btnStartMonitor_Click", false, [&] {
        if (r.stepText.trimmed().isEmpty() || UnitCode(r.unit) == 0) {
            Host().MessBox(ResString(9), {}, 1, -1);
            return false;
        }
        const int step = int(Val(r.stepText));
        if (r.unit == QLatin1String("s") && step < 10) {
            Host().MessBox(ResString(10), {}, 1, -1);
            return false;
        }
        auto &img = Link().MonitorImage;
        img[0] = int16_t(UnitCode(r.unit));
        img[1] = int16_t(ToBcd(step));  // a step over 99 does not fit: the start reports it
        const double now = r.clock.value_or(Now());
        double start = now;
        if (!r.start) {
            for (int i = 2; i <= 7; ++i) img[size_t(i)] = 0;
        } else {
            start = *r.start;
            if (DateDiff(QStringLiteral("s"), now, start) < 0) {
                Host().MessBox(ResString(11), {}, 1, -1);
                return false;
            }
            img[2] = 1;
            // A start beyond next year would read back as an earlier year: the error box says so.
            const auto wire = EncodeWireDate(DateToDateTime(start), DateToDateTime(now).date().year());
            for (int i = 0; i < 5; ++i) img[size_t(3 + i)] = wire[size_t(i)];
        }
        double stop = 0;
        if (!r.stop) {
            img[8] = img[9] = 0;
            stop = MemoryEndDate(start, step, r.unit);
        } else {
            stop = *r.stop;
            if (DateDiff(QStringLiteral("s"), start, stop) < 0) {
                Host().MessBox(ResString(12), {}, 1, -1);
                return false;
            }
            const int64_t n = step > 0 ? DateDiff(r.unit, start, stop) / step : 0;
            if (n > MemoryCapacity(Options().MemorySize)) {
                Host().MessBox(ResString(13) + QLatin1Char(' ') + GeneralDate(MemoryEndDate(start, step, r.unit)).trimmed(),
                               {}, 1, -1);
                return false;
            }
            if (n == 0) Host().MessBox(QStringLiteral("Nessun campione nell'intervallo selezionato"), {}, 1, -1);
            const int64_t address = n * 7 + 96;
            img[8] = int16_t(address / 256);
            img[9] = int16_t(address % 256);
        }
        const int64_t days = DateDiff(QStringLiteral("d"), start, stop);
        if (!Host().MessBox(ResString(days > 20 ? 14 : 15), {}, 1, 0)) return false;
        if (!StartMonitoraggio(progress, r.clock ? std::optional(DateToDateTime(*r.clock)) : std::nullopt)) return false;
        Shared().MonitorState = 1;
        Host().UpdateInfo();
        return true;
    });
}

} // namespace fm
