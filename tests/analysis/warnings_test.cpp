// The findings listed after a load: why the session ended, the stop date, the share
// over the threshold, the spread and the dates of the extremes.
#include "analysis/warnings.h"
#include "analysis/statistics.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

namespace {
// n samples one minute apart from 1 March 2026, 10:00, with the values given.
void Set(const std::vector<double> &values, int16_t stopCode) {
    MeasurementData &d = Data();
    d.DataCount = int32_t(values.size());
    d.DataValue.assign(values.size() + 1, 0.0);
    for (size_t i = 0; i < values.size(); ++i) d.DataValue[i + 1] = values[i];
    d.DataStart = DateFromParts(2026, 3, 1, 10);
    d.DataStep = 1;
    d.DataStepUnit = QStringLiteral("n");
    d.DataEnd = DateAdd(d.DataStepUnit, double(values.size()), d.DataStart);
    d.DataStop = d.DataEnd;
    d.DataStopCode = stopCode;
    d.DataIsCsv = false;
    CalculateStats(QStringLiteral("Data"));
}

QStringList Texts() {
    QStringList out;
    for (const WarningLine &w : Warnings()) out << w.text;
    return out;
}
}  // namespace

TEST(Warnings, StopReasonAndStopDate) {
    test::Fresh fresh;
    test::RecorderHost host;
    const std::pair<int16_t, int> codes[] = {{1, 41}, {2, 40}, {3, 42}, {4, 43}};
    for (const auto &[code, text] : codes) {
        Set({1, 2}, code);
        GenerateWarnings();
        EXPECT_EQ(Warnings().front().text, ResString(text));
        EXPECT_EQ(Warnings().front().level, code == 2 || code == 4 ? 3 : 2);
    }
    Set({1, 2}, 0);
    GenerateWarnings();
    EXPECT_EQ(Warnings().front().text, QStringLiteral("No Valid Stop Data"));
    EXPECT_EQ(Warnings().size(), 5u);
    Set({1, 2}, -1);  // unknown reason, old form: no stop lines at all
    Data().DataStop = StopPlaceholder1();
    GenerateWarnings();
    EXPECT_EQ(Warnings().size(), 4u);
    Data().DataStop = StopPlaceholder2();
    GenerateWarnings();
    EXPECT_EQ(Warnings().front().text, ResString(4204));
    // A stop date one step away is fine; two steps away is a finding.
    Data().DataStop = DateAdd(QStringLiteral("n"), 1, Data().DataEnd);
    GenerateWarnings();
    EXPECT_FALSE(Texts().contains(ResString(4200)));
    Data().DataStop = DateAdd(QStringLiteral("n"), -2, Data().DataEnd);
    GenerateWarnings();
    EXPECT_TRUE(Texts().contains(ResString(4200)));
    EXPECT_GE(host.warningsChanged, 8);
}

TEST(Warnings, ShareSpreadAndExtremes) {
    test::Fresh fresh;
    test::ScopedLocale us(QStringLiteral("en_US"));
    Options().Soglia = 0.2f;
    // One in twenty over the threshold is exactly 5 percent: information only.
    std::vector<double> v(20, 0.1);
    v[3] = 0.2;  // equal to the threshold is not over it
    v[7] = 0.9;
    Set(v, 3);
    GenerateWarnings();
    const QStringList t = Texts();
    EXPECT_EQ(t[1], ResString(4201) + QStringLiteral(" : 5.0%"));
    EXPECT_EQ(Warnings()[1].level, 2);
    EXPECT_EQ(t[3], ResString(4202) + QStringLiteral(" : ") + GeneralDate(DateFromParts(2026, 3, 1, 10, 7)));
    // The first of equal minima counts, and a minimum in the first sample is the start itself.
    EXPECT_EQ(t[4], ResString(4203) + QStringLiteral(" : ") + GeneralDate(DateFromParts(2026, 3, 1, 10)));
    Set({1, 3}, 3);  // mean 2: squared deviations 1 and 1
    GenerateWarnings();
    EXPECT_EQ(Texts()[2], ResString(51) + QStringLiteral("1.00 µT"));
    EXPECT_EQ(Warnings()[1].level, 3);  // 100 percent over 0.2
}

TEST(Warnings, ImportedDataListsItsChannels) {
    test::Fresh fresh;
    test::ScopedLocale it(QStringLiteral("it_IT"));
    Set({1, 2, 3}, 4);
    Data().DataIsCsv = true;
    Data().AuxMin = 1.25f;
    Data().AuxMax = 0.35f;  // 0.3499... as a double: its own digits round it up
    Data().AuxMean = 0.1f + 0.2f;
    Data().RfMax = 3.0f;
    GenerateWarnings();
    const QStringList t = Texts();
    ASSERT_EQ(t.size(), 11);
    EXPECT_EQ(t[0], ResString(44));
    EXPECT_EQ(t[1], ResString(45) + QStringLiteral("1,2"));
    EXPECT_EQ(t[2], ResString(46) + QStringLiteral("0,4"));
    EXPECT_EQ(t[3], ResString(47) + QStringLiteral("0,3"));
    EXPECT_EQ(t[5], ResString(49) + QStringLiteral("3"));
    EXPECT_FALSE(t.contains(ResString(43)));  // no stop reason in this mode
}
