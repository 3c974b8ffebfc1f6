#include "analysis/warnings.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"

#include <cmath>
#include <cstdlib>

namespace fm {

std::vector<WarningLine> &Warnings() {
    static std::vector<WarningLine> lines;
    return lines;
}

namespace {
void AddString(const QString &text, int level) { Warnings().push_back({text, level}); }

// Plain number text of a value rounded to one decimal, with the regional decimal mark.
QString OneDecimal(float v) { return FormatNumber(v, u"0.#"); }

void StopLines(const MeasurementData &d) {
    switch (d.DataStopCode) {
    case 0: AddString(QStringLiteral("No Valid Stop Data"), 3); break;
    case 1: AddString(ResString(41), 2); break;
    case 2: AddString(ResString(40), 3); break;
    case 3: AddString(ResString(42), 2); break;
    case 4: AddString(ResString(43), 3); break;
    default: break;
    }
    if (d.DataStop == StopPlaceholder1()) return;
    if (d.DataStop == StopPlaceholder2()) {
        AddString(ResString(4204), 3);
        return;
    }
    if (std::llabs(DateDiff(d.DataStepUnit, d.DataStop, d.DataEnd)) > d.DataStep) AddString(ResString(4200), 3);
}
} // namespace

void GenerateWarnings() {
    TrapVoid("GenerateWarnings", [] {
        Warnings().clear();
        struct Notify {
            ~Notify() { Host().WarningsChanged(); }
        } notify;
        const MeasurementData &d = Data();
        if (d.DataIsCsv) {
            AddString(ResString(44), 3);
            AddString(ResString(45) + OneDecimal(d.AuxMin), 2);
            AddString(ResString(46) + OneDecimal(d.AuxMax), 2);
            AddString(ResString(47) + OneDecimal(d.AuxMean), 2);
            AddString(ResString(48) + OneDecimal(d.RfMin), 2);
            AddString(ResString(49) + OneDecimal(d.RfMax), 2);
            AddString(ResString(50) + OneDecimal(d.RfMean), 2);
        } else {
            StopLines(d);
        }
        const int32_t n = d.DataCount;
        if (n < 1 || d.DataValue.size() < size_t(n) + 1) Raise(err::Subscript);
        const float soglia = Options().Soglia;
        float mx = float(d.DataValue[1]), mn = mx;
        int32_t maxPos = 0, minPos = 0, over = 0;
        double sum = 0;
        for (int32_t i = 1; i <= n; ++i) {
            const double value = d.DataValue[size_t(i)];
            const float v = float(value);
            if (v > soglia) ++over;
            if (v > mx) {
                mx = v;
                maxPos = i - 1;
            }
            if (v < mn) {
                mn = v;
                minPos = i - 1;
            }
            sum += (value - d.DataMean) * (value - d.DataMean);
        }
        const float share = float(double(over) * 100 / n);
        AddString(ResString(4201) + QStringLiteral(" : ") + FormatNumber(share, u"0.0") + QLatin1Char('%'),
                  share > 5 ? 3 : 2);
        AddString(ResString(51) + FormatNumber(sum / n, u"0.00") + QStringLiteral(" µT"), 2);
        const auto when = [&](int32_t pos) {
            return GeneralDate(DateAdd(d.DataStepUnit, double(pos) * d.DataStep, d.DataStart));
        };
        AddString(ResString(4202) + QStringLiteral(" : ") + when(maxPos), 2);
        AddString(ResString(4203) + QStringLiteral(" : ") + when(minPos), 2);
    });
}

} // namespace fm
