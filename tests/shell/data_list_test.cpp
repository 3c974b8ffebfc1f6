// The data list's text: heading, rows by time and by value, the median's row.
#include "core/data_set.h"
#include "core/language.h"
#include "files/log_file.h"
#include "shell/data_list.h"
#include "shell/info_model.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

TEST(DataList, RowsByTimeAndByValue) {
    test::Fresh fresh(1);
    test::RecorderHost host;
    test::ScopedLocale it(QStringLiteral("it_IT"));
    const QString log = fresh.Path(QStringLiteral("in.log"));
    test::WriteBytes(log, test::LogText({"Field Activity Log", "13/10/2026 23:59:00@14/10/2026 00:03:00@3", "1n", "4",
                                         "ID", "Cabina", "10.00 20.00 30.00  0", "-1 -1 -1 0", "0.30 0.40 0.00  0",
                                         "1.00 0.00 0.00  0"}));
    ASSERT_TRUE(LoadFile(log));
    const DataList byTime(true);
    ASSERT_EQ(byTime.HeadingLines(), 7);
    EXPECT_EQ(byTime.Line(4), QStringLiteral("         Mediana dei dati :0,75(uT)"));
    EXPECT_EQ(byTime.Line(6), QString());
    // Every column 8 wide; the first format has no blanks of its own.
    EXPECT_EQ(byTime.Line(7), QStringLiteral("13/10/2026 23:59:00   10,00   20,00   30,00   37,42"));
    EXPECT_EQ(byTime.Line(8), QStringLiteral("14/10/2026 00:00:00 NOT AVAILABLE - OPERATING GSM"));
    EXPECT_EQ(byTime.LineCount(), 11);
    // Values 37.42, -1 (0 in the sort), 0.5, 1: the median 0.75 is the mean of rows 2 and 3 by value.
    EXPECT_EQ(Data().MedianPos, 2);
    EXPECT_EQ(byTime.MedianLine(), 9);  // sample 3 (0.5) stands on line 9 by time
    const DataList byValue(false);
    EXPECT_EQ(byValue.SampleOfLine(7), 2);  // the mark sorts first, as 0
    EXPECT_EQ(byValue.Line(7), QStringLiteral("14/10/2026 NOT AVAILABLE - OPERATING GSM"));
    EXPECT_EQ(byValue.SampleOfLine(10), 1);
    EXPECT_EQ(byValue.MedianLine(), 8);
    // Saved as plain text with CR LF, and a failure keeps the old file.
    const QString out = fresh.Path(QStringLiteral("list.txt"));
    ASSERT_TRUE(SalvaDati(byTime, out));
    EXPECT_TRUE(test::ReadBytes(out).contains("23:59:00   10,00   20,00   30,00   37,42\r\n"));
}

// A load that fails half-way sizes the arrays anew and leaves the rest zero; the list
// on show goes on reading as it was made, in either order.
TEST(DataList, KeepsItsRowsWhenTheRecordChangesUnderIt) {
    test::Fresh fresh(1);
    test::RecorderHost host;
    const QString log = fresh.Path(QStringLiteral("in.log"));
    test::WriteBytes(log, test::LogText({"Field Activity Log", "13/10/2026 23:59:00@14/10/2026 00:03:00@3", "1n", "3",
                                         "ID", "Cabina", "1.00 0.00 0.00  0", "-1 -1 -1 0", "0.30 0.40 0.00  0"}));
    ASSERT_TRUE(LoadFile(log));
    for (bool byTime : {true, false}) {
        const DataList list(byTime);
        QStringList before;
        for (int64_t i = 0; i < list.LineCount(); ++i) before << list.Line(i);
        MeasurementData &d = Data();
        d.DataStart += 3;
        d.DataCount = 40;
        d.SizeArrays(40);
        QStringList after;
        for (int64_t i = 0; i < list.LineCount(); ++i) after << list.Line(i);
        EXPECT_EQ(after, before);
        EXPECT_EQ(list.LineCount(), 7 + 3);
        ASSERT_TRUE(LoadFile(log));
    }
}

// The panel's mean is a float and the list's median a double: the same 0.165 rounds
// the same way in both, from the digits it reads as.
TEST(DataList, PanelAndListRoundAlike) {
    test::Fresh fresh(1);
    test::RecorderHost host;
    test::ScopedLocale it(QStringLiteral("it_IT"));
    const QString log = fresh.Path(QStringLiteral("in.log"));
    test::WriteBytes(
        log, test::LogText({"Field Activity Log", "13/10/2026 10:00:00@13/10/2026 10:02:00@3", "1n", "2",
                            "ID", "Cabina", "0.16 0.00 0.00  0", "0.17 0.00 0.00  0"}));
    ASSERT_TRUE(LoadFile(log));
    ASSERT_EQ(Data().DataMean, 0.165f);
    const InfoTexts t = BuildInfo();
    EXPECT_EQ(t.values[2], QStringLiteral("0,16 µT"));  // the mean
    EXPECT_EQ(t.values[3], QStringLiteral("0,16 µT"));  // the median
    EXPECT_EQ(DataList(true).Line(4), QStringLiteral("         Mediana dei dati :0,16(uT)"));
}
