#include "core/data_set.h"

#include "core/regional.h"

namespace fm {

MeasurementData &Data() {
    static MeasurementData data;
    return data;
}

SharedState &Shared() {
    static SharedState shared;
    return shared;
}

QString FixedText(const QString &text, int width) {
    if (text.size() >= width) return text.left(width);
    return text + QString(width - text.size(), QLatin1Char(' '));
}

void MeasurementData::SizeArrays(int32_t n) {
    const size_t count = size_t(n) + 1;
    DataX.assign(count, 0.0f);
    DataY.assign(count, 0.0f);
    DataZ.assign(count, 0.0f);
    DataValue.assign(count, 0.0);
    SortedValue.assign(count, 0.0);
    SortedIndex.assign(count, 0);
}

void MeasurementData::SetShortID(const QString &text) { ShortID = FixedText(text, kShortIdLength); }
void MeasurementData::SetLongID(const QString &text) { LongID = FixedText(text, kLongIdLength); }

double MeasurementData::SampleDate(int32_t i) const {
    return DateAdd(DataStepUnit, double(i - 1) * DataStep, DataStart);
}

QString MeasurementData::DataDate(int32_t i) const {
    if (i < 1 || i > DataDateCount) return {};
    return GeneralDate(SampleDate(i));
}

double StopPlaceholder1() { return DateFromParts(2001, 1, 1, 1, 1, 1); }
double StopPlaceholder2() { return DateFromParts(2001, 1, 1, 1, 1, 2); }

void InitVariabili() {
    Shared() = SharedState{};
    auto &s = Shared();
    s.UnitLetters = {QString(), QString(), QStringLiteral("s"), QStringLiteral("n"),
                     QStringLiteral("h"), QStringLiteral("d")};
}

} // namespace fm
