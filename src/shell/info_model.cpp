#include "shell/info_model.h"

#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "shell/data_list.h"

namespace fm {
QString StepUnitWord(const QString &letter) {
    if (letter == QLatin1String("s")) return ResString(3013);
    if (letter == QLatin1String("n")) return ResString(3012);
    if (letter == QLatin1String("h")) return ResString(3014);
    if (letter == QLatin1String("d")) return ResString(3015);
    return letter;
}

QString Microtesla(float v) {
    return FormatNumber(v, u"#0.00") + QStringLiteral(" µT");
}

QString Microtesla(double v) {
    return FormatNumber(v, u"#0.00") + QStringLiteral(" µT");
}

InfoTexts BuildInfo() {
    const MeasurementData &d = Data();
    InfoTexts t;
    t.shortId = d.ShortID.trimmed().isEmpty() ? ResString(3021) : d.ShortID;
    t.longId = d.LongID.trimmed().isEmpty() ? ResString(3021) : d.LongID;
    t.dataPresent = d.DataPresent;
    t.saved = d.DataSaved;
    const QString none = QStringLiteral("---");
    if (d.DataPresent) {
        t.step = QString::number(d.DataStep) + QLatin1Char(' ') + StepUnitWord(d.DataStepUnit);
        t.source = d.DataSource;
        t.count = QString::number(d.DataCount);
        t.start = GeneralDate(d.DataStart);
        t.stop = GeneralDate(d.DataEnd);
        // Imports that run no sort have no median, whatever the field holds.
        t.values = {Microtesla(d.DataMin), Microtesla(d.DataMax), Microtesla(d.DataMean),
                    DataList::ValueOrderAvailable() ? Microtesla(d.DataMedian) : none};
    } else {
        t.step = t.source = t.count = t.start = t.stop = none;
        t.values = {none, none, none, none};
    }
    switch (Shared().MonitorState) {
        case 0:
            t.monitorText = ResString(3011);
            t.monitorBack = 0xC0FFC0;
            break;
        case 1:
            t.monitorText = ResString(3010);
            t.monitorBack = 0xC0C0FF;
            break;
        default:
            t.monitorText = ResString(5);
            t.monitorBack = 0xE0E0E0;
            break;
    }
    t.commText = ResString(Shared().CommOpen ? 3022 : 3023);
    t.commColor = Shared().CommOpen ? 49152 : 192;
    return t;
}

int32_t MemoryCapacity(int32_t memorySize) {
    return CLng((memorySize - 96) / 7.0);
}

double MemoryEndDate(double start, int32_t step, const QString &unit) {
    return DateAdd(unit, double(MemoryCapacity(Options().MemorySize)) * step, start);
}

}  // namespace fm
