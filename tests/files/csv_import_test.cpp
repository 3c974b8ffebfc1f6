// "File Centralina" files through LoadFile: records, the one that lacks its line feed,
// the fifth column's -100, the RF figures, and what each kind of bad file leaves.
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "shell/data_list.h"
#include "shell/info_model.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

namespace {
// A record: date, X, Y, Z, aux, RF, resultant.
QByteArray Rec(const char *aux, const char *rf, const char *value = "0.50",
               const char *date = "14/10/2026 08:00:00") {
    return QByteArray(date) + ",0.30,0.40,0.00," + aux + ',' + rf + ',' + value;
}

class CsvImportTest : public ::testing::Test {
protected:
    test::Fresh fresh;
    test::RecorderHost host;
    bool Load(const QByteArray &bytes) { return LoadFile(fresh.Write(QStringLiteral("unit.csv"), bytes)); }
    // The box of the error handler names the procedure.
    bool Trapped() const { return host.LastBox().contains(QStringLiteral("Error Raised by  : OpenCsv")); }
};
}  // namespace

TEST_F(CsvImportTest, ReadsRecordsAtAFiveSecondStep) {
    ASSERT_TRUE(Load(Rec("2.5", "1.25", "0.165") + '\n' + Rec("3.5", "0.75", "3.46", "garbage") + '\n' +
                     Rec("4.5", "2", "1") + '\n'));
    const MeasurementData &d = Data();
    EXPECT_TRUE(d.DataPresent && d.DataSaved && d.DataIsCsv);
    EXPECT_EQ(d.DataSource, QStringLiteral("File Centralina"));
    EXPECT_EQ(d.DataCount, 3);
    EXPECT_EQ(d.DataStep, 5);
    EXPECT_EQ(d.DataStepUnit, QStringLiteral("s"));
    EXPECT_EQ(d.DataStart, DateFromParts(2026, 10, 14, 8, 0, 0));  // later dates are not read
    EXPECT_EQ(d.DataEnd, DateFromParts(2026, 10, 14, 8, 0, 15));
    EXPECT_EQ(d.DataX[1], 0.30f);
    EXPECT_EQ(d.DataY[2], 0.40f);
    // The file's value as a 32-bit number, held as the text it reads as.
    EXPECT_EQ(float(d.DataValue[1]), 0.165f);
    EXPECT_EQ(d.DataValue[1], 0.165);
    EXPECT_EQ(d.DataValue[2], 3.46);
    EXPECT_EQ(d.DataRf[3], 2.0f);
    EXPECT_EQ(d.RfMax, 2.0f);
    EXPECT_EQ(d.RfMin, 0.75f);
    EXPECT_FLOAT_EQ(d.RfMean, 4.0f / 3);
    EXPECT_EQ(d.DataMax, 3.46f);
    // The fifth column's figures stand one value behind: the last one is not in them.
    EXPECT_EQ(d.AuxMax, 3.5f);
    EXPECT_EQ(d.AuxMin, 2.5f);
    EXPECT_EQ(d.AuxMean, 3.0f);
    EXPECT_LT(d.DataValue.size(), 10u);  // sized to the records
    EXPECT_EQ(host.waitTexts, QStringList{ResString(53)});
    EXPECT_EQ(host.waitHidden, 1);
    EXPECT_TRUE(host.enabled[13] && host.enabled[15]);
}

TEST_F(CsvImportTest, ARecordWithoutItsLineFeedIsDroppedButLeavesItsMarks) {
    ASSERT_TRUE(Load(Rec("1", "1") + '\n' + Rec("2", "3") + '\n' + Rec("9", "7", "6")));
    const MeasurementData &d = Data();
    EXPECT_EQ(d.DataCount, 2);
    EXPECT_EQ(d.DataEnd, DateFromParts(2026, 10, 14, 8, 0, 10));
    // Its RF value counts, behind the count; its resultant never came.
    EXPECT_EQ(d.RfMax, 7.0f);
    EXPECT_EQ(d.DataRf[3], 7.0f);
    EXPECT_EQ(d.DataValue[3], 0.0);
    EXPECT_EQ(d.DataMax, 0.5f);
    EXPECT_EQ(d.AuxMax, 2.0f);  // the copies: the 9 is left out
}

TEST_F(CsvImportTest, MinusOneHundredInTheFifthColumnIsNoValue) {
    // Some records: skipped, though the next value still divides by its own record number.
    ASSERT_TRUE(
        Load(Rec("4", "1") + '\n' + Rec("-100", "1") + '\n' + Rec("10", "1") + '\n' + Rec("1", "1") + '\n'));
    EXPECT_EQ(Data().AuxMean, 6.0f);  // (4 * 2 + 10) / 3
    EXPECT_EQ(Data().AuxMax, 10.0f);
    EXPECT_EQ(Data().AuxMin, 4.0f);

    // In the first record: the later ones start from what the measurement before left.
    Data().AuxMean = 8;
    Data().AuxMax = 8;
    Data().AuxMin = 8;
    ASSERT_TRUE(Load(Rec("-100", "1") + '\n' + Rec("2", "1") + '\n' + Rec("5", "1") + '\n'));
    EXPECT_EQ(Data().AuxMean, 5.0f);  // (8 * 1 + 2) / 2
    EXPECT_EQ(Data().AuxMin, 2.0f);
    EXPECT_EQ(Data().AuxMax, 8.0f);

    // In every record: the three end at 0.
    ASSERT_TRUE(Load(Rec("-100", "1") + '\n' + Rec("-100", "1") + '\n'));
    EXPECT_EQ(Data().AuxMean, 0.0f);
    EXPECT_EQ(Data().AuxMax, 0.0f);
    EXPECT_EQ(Data().AuxMin, 0.0f);
}

TEST_F(CsvImportTest, NumbersReadWithAPointUnderEitherRegionalSetting) {
    for (const char *locale : {"it_IT", "en_US"}) {
        test::ScopedLocale scoped(QString::fromLatin1(locale));
        ASSERT_TRUE(Load(Rec(" +1e1 ", "0.1", "12.345678912") + '\n' + Rec("1", ".5", "7.") + '\n'));
        EXPECT_EQ(Data().AuxMax, 10.0f);
        EXPECT_EQ(Data().DataRf[1], 0.1f);
        EXPECT_EQ(Data().DataRf[2], 0.5f);
        EXPECT_EQ(float(Data().DataValue[1]), 12.345678912f);
        EXPECT_EQ(Data().DataValue[2], 7.0);
    }
}

TEST_F(CsvImportTest, AnUnreadableFieldIsReportedAndLeavesWhatWasRead) {
    ASSERT_TRUE(Load(Rec("1", "1") + '\n'));
    const double start = Data().DataStart;
    Data().DataPresent = true;
    Data().DataSaved = false;
    Data().DataIsCsv = false;
    EXPECT_FALSE(Load(Rec("1", "4", "2") + '\n' + Rec("1", "5", "3") + '\n' + Rec("1", "1.2.3") + '\n'));
    EXPECT_TRUE(Trapped());
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("record 3, field 6")));
    const MeasurementData &d = Data();
    EXPECT_EQ(d.DataCount, 3);  // the record counter when it stopped
    EXPECT_EQ(d.DataValue[2], 3.0);
    EXPECT_EQ(d.RfMax, 5.0f);
    EXPECT_FALSE(d.DataSaved);  // kept
    EXPECT_FALSE(d.DataIsCsv);  // kept
    EXPECT_EQ(d.DataStart, start);
    EXPECT_EQ(host.waitHidden, host.waitShown);
    EXPECT_GE(d.DataValue.size(), size_t(d.DataCount) + 1);

    for (const QByteArray &bad :
         {Rec("1", "1", "0.5", "not a date") + '\n', Rec("1", "1", "0.5", "14/10/005") + '\n',
          Rec("1", "inf") + '\n', Rec("", "1") + '\n', Rec("1", "1", "1e60") + '\n'}) {
        host.boxes.clear();
        EXPECT_FALSE(Load(bad)) << bad.constData();
        EXPECT_TRUE(Trapped()) << bad.constData();
        EXPECT_FALSE(Data().DataIsCsv) << bad.constData();
    }
}

TEST_F(CsvImportTest, FilesThatCannotBeSuchAFileLeaveTheDataSetAlone) {
    ASSERT_TRUE(Load(Rec("1", "1") + '\n' + Rec("1", "1") + '\n'));
    const QString file = Data().DataFile;
    for (const QByteArray &bad : {Rec("1", "1") + "\r\n" + Rec("1", "1") + "\r\n", QByteArray(),
                                  Rec("1", "1"), QByteArray("1,2,3\n")}) {
        host.boxes.clear();
        EXPECT_FALSE(LoadFile(fresh.Write(QStringLiteral("bad.csv"), bad)));
        ASSERT_EQ(host.boxes.size(), 1u);
        EXPECT_EQ(host.LastBox(), ResString(bad.contains('\r') ? 4230 : 4231));
        EXPECT_EQ(Data().DataCount, 2);
        EXPECT_EQ(Data().DataFile, file);
        EXPECT_EQ(host.waitHidden, host.waitShown);
    }
    // Only a lower-case ".csv" name is such a file.
    EXPECT_FALSE(LoadFile(fresh.Write(QStringLiteral("unit.CSV"), Rec("1", "1") + '\n')));
    EXPECT_EQ(host.LastBox(), ResString(22));
}

// Past a 16-bit count, the arrays grown again and again: the first record sizes them and
// the later ones are shorter (their dates are not read). The million records are the bench's.
TEST_F(CsvImportTest, RecordsPastASixteenBitCount) {
    QByteArray text;
    for (int i = 0; i < 40'000; ++i) {
        const QByteArray r = QByteArray::number(i % 1000);
        text += (i ? "d," : "14/03/2026 00:00:00,") + r + ",0.1,0.2," + (i % 7 ? "-100" : "3") + ',' + r + ',' + r +
                '\n';
    }
    ASSERT_TRUE(Load(text));
    const MeasurementData &d = Data();
    ASSERT_EQ(d.DataCount, 40'000);
    for (size_t i = 1; i <= 40'000; ++i)
        ASSERT_TRUE(d.DataRf[i] == float((i - 1) % 1000) && d.DataValue[i] == double((i - 1) % 1000)) << i;
    EXPECT_EQ(d.RfMax, 999.0f);
    EXPECT_EQ(d.DataMax, 999.0f);
    EXPECT_NEAR(d.DataEnd, DateFromParts(2026, 3, 14) + 200'000.0 / 86400, 1e-9);
}

// What the panel and the list make of such a data set (the findings have their own test);
// every column shows its float's own digits: 0.165 is 0,16, never the widened 0,17.
TEST_F(CsvImportTest, ViewsShowTheAuxiliaryAndRfFigures) {
    test::ScopedLocale it(QStringLiteral("it_IT"));
    ASSERT_TRUE(Load("14/10/2026 08:00:00,0.165,3.46,0.30,0.165,1.25,0.165\n" + Rec("2.675", "0.35", "1.5") +
                     '\n' + Rec("8", "2", "1") + '\n'));
    const InfoTexts t = BuildInfo();
    EXPECT_EQ(t.source, QStringLiteral("File Centralina"));
    EXPECT_EQ(t.step, QStringLiteral("5 ") + ResString(3013));
    EXPECT_EQ(t.values[1], QStringLiteral("1,50 µT"));
    EXPECT_EQ(t.values[3], QStringLiteral("---"));  // no median without the order by value

    // No order by value: the list by time, one more heading line, no median's row.
    EXPECT_FALSE(DataList::ValueOrderAvailable());
    const DataList list(false);
    EXPECT_TRUE(list.Chronological());
    EXPECT_EQ(list.HeadingLines(), 8);
    EXPECT_EQ(list.MedianLine(), -1);
    EXPECT_EQ(list.Line(4), QStringLiteral("         Mediana dei dati :---(uT)"));
    EXPECT_EQ(list.Line(5), ResString(45) + QStringLiteral(" 0,16 ") + ResString(46) +
                                QStringLiteral(" 2,68 ") + ResString(47) + QStringLiteral(" 1,42 "));
    EXPECT_EQ(list.Line(6), ResString(3020) + ResString(3050));
    EXPECT_EQ(list.LineOfSample(1), 8);
    EXPECT_TRUE(list.Line(8).endsWith(QStringLiteral("    0,16    3,46    0,30    0,16")));
    EXPECT_EQ(list.LineCount(), 11);
}
