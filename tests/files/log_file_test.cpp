// Loading and saving "Field Activity Log" files, their round trips under two
// regional settings, and what each kind of bad file leaves behind.
#include "analysis/warnings.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <QFile>
#include <QFileInfo>
#include <cmath>

using namespace fm;
using test::LogText;

namespace {
QStringList Header(const QString &dates, const QString &step, const QString &count) {
    return {"Field Activity Log", dates, step, count, "SHORT", "Long code"};
}

QByteArray Log(const QStringList &samples, const QString &count = {}) {
    return LogText(Header("14/10/2026 08:00:00@14/10/2026 08:05:00@3", "1n",
                          count.isEmpty() ? QString::number(samples.size()) : count) + samples);
}

class LogFileTest : public ::testing::Test {
protected:
    test::Fresh fresh;
    test::RecorderHost host;
    QString Write(const QByteArray &bytes, const QString &name = QStringLiteral("in.log")) {
        return fresh.Write(name, bytes);
    }
};
} // namespace

TEST_F(LogFileTest, LoadsSamplesDatesAndFigures) {
    ASSERT_TRUE(LoadFile(Write(Log({"0.30 0.40 0.00  0", "-1 -1 -1 0", "1,00 0,00 0,00  0"}))));
    const MeasurementData &d = Data();
    EXPECT_TRUE(d.DataPresent);
    EXPECT_TRUE(d.DataSaved);
    EXPECT_EQ(d.DataSource, QStringLiteral("File"));
    EXPECT_EQ(d.DataCount, 3);
    EXPECT_EQ(d.DataStart, DateFromParts(2026, 10, 14, 8, 0, 0));
    EXPECT_EQ(d.DataStop, DateFromParts(2026, 10, 14, 8, 5, 0));
    EXPECT_EQ(d.DataEnd, DateFromParts(2026, 10, 14, 8, 3, 0));
    EXPECT_EQ(d.ShortID, QStringLiteral("SHORT").leftJustified(16));
    EXPECT_DOUBLE_EQ(d.DataValue[1], 0.5);
    EXPECT_EQ(d.DataValue[2], -1.0);  // the mark of a sample without data
    EXPECT_EQ(d.SortedIndex[1], 0);   // not seeded: it sorts first, as a value of 0
    EXPECT_EQ(d.SortedValue[1], 0.0);
    EXPECT_DOUBLE_EQ(d.DataValue[3], 1.0);  // decimal comma read as a point
    EXPECT_EQ(d.DataDate(3), GeneralDate(DateFromParts(2026, 10, 14, 8, 2, 0)));
    EXPECT_FLOAT_EQ(d.DataMin, 0.5f);
    EXPECT_EQ(host.infoUpdates, 1);
    EXPECT_EQ(host.warningsShown, 1);
    for (int b : {3, 4, 13, 14, 15, 25}) EXPECT_TRUE(host.enabled[b]);
}

TEST_F(LogFileTest, OldFormsAndTolerantFields) {
    // A single date, an hourly step whose number stops at the letter, a count of one.
    ASSERT_TRUE(LoadFile(Write(LogText({"Field Activity Log", "13/02/2025", "1h", "1", "", "", "1.5 2.5 3.5 ",
                                        "extra line"}))));
    EXPECT_EQ(Data().DataStop, StopPlaceholder1());
    EXPECT_EQ(Data().DataStopCode, -1);
    EXPECT_EQ(Data().DataStepUnit, QStringLiteral("h"));
    EXPECT_EQ(Data().DataX.size(), 2u);
    EXPECT_FLOAT_EQ(Data().DataZ[1], 3.5f);
    // No stop line and no stop date line for the old form.
    for (const WarningLine &w : Warnings()) EXPECT_NE(w.text, ResString(4200));
    EXPECT_EQ(Data().DataEnd, DateFromParts(2025, 2, 13, 1, 0, 0));
}

TEST_F(LogFileTest, RoundTripsUnderBothRegionalSettings) {
    for (const char *locale : {"it_IT", "en_US"}) {
        test::ScopedLocale loc(QString::fromLatin1(locale));
        ASSERT_TRUE(LoadFile(Write(Log({"0.12 -3.40 5.00  0", "-1 -1 -1 0", "0.01 0.02 0.03  0"}))));
        const QString out = fresh.Path(QStringLiteral("out.log"));
        QFile::remove(out);
        ASSERT_TRUE(SaveFile(out));
        const QByteArray saved = test::ReadBytes(out);
        QByteArray line("\"0.12 -3.40 5.00  0\"\r\n");
        line.replace('.', DecimalMark().toLatin1());
        EXPECT_TRUE(saved.contains(line)) << saved.constData();
        EXPECT_TRUE(saved.contains("\"-1 -1 -1 0\"\r\n"));
        EXPECT_TRUE(saved.startsWith("\"Field Activity Log\"\r\n"));
        EXPECT_TRUE(saved.endsWith("0.03  0\"\r\n") || saved.endsWith("0,03  0\"\r\n"));
        const MeasurementData before = Data();
        ASSERT_TRUE(LoadFile(out));
        EXPECT_EQ(Data().DataStart, before.DataStart);
        EXPECT_EQ(Data().DataStop, before.DataStop);
        EXPECT_EQ(Data().DataX, before.DataX);
        EXPECT_EQ(Data().DataValue, before.DataValue);
        EXPECT_EQ(Data().DataFile, out);
    }
}

TEST_F(LogFileTest, RefusedFilesLeaveTheDataSetAsTheyFoundIt) {
    ASSERT_TRUE(LoadFile(Write(Log({"1.00 1.00 1.00  0"}), QStringLiteral("good.log"))));
    const double start = Data().DataStart;
    struct Case {
        QByteArray bytes;
        int message;
    };
    const Case cases[] = {
        {LogText({"FIELD ACTIVITY LOG", "14/10/2026", "1n", "1"}), 22},
        {LogText(Header("not a date@14/10/2026@3", "1n", "1")), 25},
        {LogText(Header("14/10/2026", "0n", "1")), 24},
        {LogText(Header("14/10/2026", "0.4s", "1")), 24},
        {LogText(Header("14/10/2026", "5s", ".3")), 25},
        {LogText(Header("14/10/2026", "5s", "-3")), 25},
    };
    for (const Case &c : cases) {
        host.boxes.clear();
        EXPECT_FALSE(LoadFile(Write(c.bytes)));
        ASSERT_EQ(host.boxes.size(), 1u);
        EXPECT_EQ(host.boxes[0].text, ResString(c.message));
    }
    host.boxes.clear();
    EXPECT_FALSE(LoadFile(fresh.Path(QStringLiteral("missing.log"))));
    EXPECT_EQ(host.LastBox(), ResString(21));
    EXPECT_FALSE(LoadFile(Write("a;b;c\r\n", QStringLiteral("upper.LOG.CSV"))));
    EXPECT_EQ(host.LastBox(), ResString(22));
    // The step was read before the count failed; the samples of the good file stay.
    EXPECT_EQ(Data().DataStep, 5);
    EXPECT_EQ(Data().DataStart, DateFromParts(2026, 10, 14));
    EXPECT_NE(Data().DataStart, start);
    EXPECT_TRUE(Data().DataPresent);
    EXPECT_EQ(Data().DataCount, 1);
}

TEST_F(LogFileTest, BrokenSampleSectionsAreReportedAsFaults) {
    const QByteArray broken[] = {
        Log({"1.00 1.00 1.00  0"}, QStringLiteral("3")),   // ends before its count
        Log({"1.00 1.00"}),                                 // too few blanks
        LogText(Header("14/10/2026", "10x", "1") << "1 1 1 0"),  // no such unit
    };
    for (const QByteArray &bytes : broken) {
        host.boxes.clear();
        Data().DataPresent = false;
        EXPECT_FALSE(LoadFile(Write(bytes)));
        ASSERT_EQ(host.boxes.size(), 1u);
        EXPECT_TRUE(host.boxes[0].system);
        EXPECT_TRUE(host.boxes[0].text.contains(QStringLiteral("Error Raised by  : LoadFile")));
        EXPECT_FALSE(Data().DataPresent);
    }
    // A count far beyond what the file holds is refused before memory is taken, and
    // the samples in memory keep the count they came with.
    ASSERT_TRUE(LoadFile(Write(Log({"1 1 1 0", "2 2 2 0"}))));
    EXPECT_FALSE(LoadFile(Write(Log({"1 1 1 0"}, QStringLiteral("2000000000")))));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Input past end of file")));
    EXPECT_EQ(Data().DataCount, 2);
    EXPECT_EQ(Data().DataX.size(), 3u);
}

TEST_F(LogFileTest, SaveAsksBeforeReplacingAndKeepsTheOldFileOnFailure) {
    ASSERT_TRUE(LoadFile(Write(Log({"1.00 2.00 3.00  0"}))));
    const QString target = fresh.Path(QStringLiteral("existing.log"));
    test::WriteBytes(target, "previous");
    host.answers = {false};
    EXPECT_FALSE(SaveFile(target));
    EXPECT_EQ(host.LastBox(), ResString(26));
    EXPECT_EQ(test::ReadBytes(target), QByteArray("previous"));

    // A save that fails halfway: the old file stays whole, DataSaved keeps its value.
    Data().DataSaved = false;
    host.answers = {true};
    {
        test::FileSizeLimit limit(40);
        EXPECT_FALSE(SaveFile(target));
    }
    EXPECT_FALSE(Data().DataSaved);
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Error Raised by  : SaveFile")));
    EXPECT_EQ(test::ReadBytes(target), QByteArray("previous"));

    host.answers = {true};
    ASSERT_TRUE(SaveFile(target));
    EXPECT_TRUE(Data().DataSaved);
    EXPECT_TRUE(test::ReadBytes(target).startsWith("\"Field Activity Log\""));
}

// Bad input gets a message that says what is wrong with it, and costs no more than the input.
TEST_F(LogFileTest, BadInputIsRefusedWithItsCause) {
    ASSERT_TRUE(LoadFile(Write(Log({"1.00 2.00 3.00  0"}))));
    // Beyond the 32-bit range a value would be written as "inf" and read back as 0.
    EXPECT_FALSE(LoadFile(Write(Log({"1e39 0 0 0"}), QStringLiteral("big.log"))));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Error Number     : 6\r\n")))
        << qPrintable(host.LastBox());
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Overflow")));
    EXPECT_FALSE(LoadFile(Write(Log({"0 0 -4e38 0"}), QStringLiteral("small.log"))));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Overflow")));

    // A line of a megabyte is quoted by its start only.
    EXPECT_FALSE(LoadFile(Write(Log({QString(1 << 20, QLatin1Char('7'))}), QStringLiteral("long.log"))));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Invalid sample line: 777")));
    EXPECT_LT(host.LastBox().size(), 500);

    // A pipe is refused at once instead of waiting for a writer on its other end.
    const QString fifo = fresh.Path(QStringLiteral("pipe.log"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_FALSE(LoadFile(fifo));
    EXPECT_EQ(host.LastBox(), ResString(4345));
    EXPECT_FALSE(LoadFile(fresh.Dir().path()));
    EXPECT_EQ(host.LastBox(), ResString(4345));
    EXPECT_EQ(Data().DataCount, 1);  // the data set stays as it was
}

// Sample values are read as Val reads them, plain decimals on the fast road and every
// other form on Val's: commas, signs, exponents, long digit runs, stray characters.
TEST_F(LogFileTest, SampleValuesReadAsValReadsThem) {
    const QStringList texts = {"0.35", "-0.00", "12.5", "7", ".5", "5.", "0,35", "+2.25", "1e-1", "2E1", "-.25",
                               "1.2.3", "12345678901234567.5", "0.000000000000000001", "abc", "-",
                               "3.4028234e38",  // just below the 32-bit limit; above it is an overflow
                               "0.1000000000000000055511151231257827"};
    QStringList samples;
    for (const QString &t : texts) samples << t + QStringLiteral(" 0.10 ") + t + QStringLiteral("  0");
    ASSERT_TRUE(LoadFile(Write(Log(samples))));
    const MeasurementData &d = Data();
    for (int i = 0; i < int(texts.size()); ++i) {
        QString expected = texts[i];
        expected.replace(QLatin1Char(','), QLatin1Char('.'));
        const float v = float(Val(expected));
        EXPECT_EQ(d.DataX[size_t(i + 1)], v) << texts[i].toStdString();
        EXPECT_EQ(d.DataZ[size_t(i + 1)], v) << texts[i].toStdString();
        EXPECT_EQ(d.DataY[size_t(i + 1)], 0.1f);
    }
}

// Past the reader's 1 MiB chunk: no byte lost or doubled where one ends. (A million
// samples are the bench's.)
TEST_F(LogFileTest, ALogLargerThanTheReadersChunk) {
    const QString path = fresh.Path(QStringLiteral("big.log"));
    test::WriteDayLog(path, 60'000);
    ASSERT_GT(QFileInfo(path).size(), 1 << 20);
    ASSERT_TRUE(LoadFile(path));
    ASSERT_EQ(Data().DataCount, 60'000);
    for (int i = 0; i < 60'000; ++i) {
        const double v = 0.3 + 0.25 * std::sin(i / 20.0);  // as the day's log writes it
        ASSERT_EQ(test::SampleText(Data(), i + 1),
                  QStringLiteral("%1 %2 %3").arg(v * 0.8, 0, 'f', 2).arg(v * 0.5, 0, 'f', 2).arg(v * 0.3, 0, 'f', 2))
            << i;
    }
}
