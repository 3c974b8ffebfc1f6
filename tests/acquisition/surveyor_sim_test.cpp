// The Surveyor import against the Surveyor simulator on a real pseudo-terminal: a
// multi-block import sample by sample, and each failure. (A log with its marks saved and
// read back is the log file's test.)
#include "acquisition/surveyor.h"
#include "core/data_set.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "support/recorder_host.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QElapsedTimer>

using namespace fm;
using test::SampleText;

namespace {
class SurveyorSimTest : public ::testing::Test {
protected:
    void TearDown() override { Seriale().SetPortOpen(false); }

    // Starts the unit with `args` (always --fast) and opens the port on it.
    test::Simulator &Start(QStringList args) {
        args << QStringLiteral("--fast") << QStringLiteral("--log") << fresh.Path(QStringLiteral("unit.log"))
             << QStringLiteral("--dump-samples") << fresh.Path(QStringLiteral("samples.txt"));
        if (test::MonthFirst()) args << QStringLiteral("--month-first");
        sim.emplace(fresh.Dir().path(), args, QStringLiteral(FLUXMERE_SURVEYOR_SIM));
        EXPECT_FALSE(sim->device.isEmpty());
        EXPECT_TRUE(SelectPort(0));
        return *sim;
    }
    QStringList Expected() const {
        return QString::fromLatin1(test::ReadBytes(fresh.Path(QStringLiteral("samples.txt"))))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    // What the unit was asked, one letter a line; the last letter may still be on its way.
    void ExpectAsked(const QString &expected) const {
        QString asked;
        QElapsedTimer waited;
        waited.start();
        do {
            asked = QString::fromLatin1(test::ReadBytes(fresh.Path(QStringLiteral("unit.log"))))
                        .remove(QLatin1Char('\n'));
            if (asked.size() >= expected.size()) break;
            test::RunEvents(20);
        } while (waited.elapsed() < 2000);
        EXPECT_EQ(asked, expected);
    }
    void ExpectSamples(int from, int to, const QStringList &expected) {
        for (int i = from; i <= to; ++i) ASSERT_EQ(SampleText(Data(), i), expected[i - 1]) << "sample " << i;
    }
    QStringList Texts() const {
        QStringList t;
        for (const test::Box &b : host.boxes) t << b.text;
        return t;
    }

    test::Fresh fresh;
    test::RecorderHost host;
    std::optional<test::Simulator> sim;
};
}  // namespace

TEST_F(SurveyorSimTest, BlocksGapsAndAnOverlapArriveAsSent) {
    // Seven stored blocks: 0, 2, 4 and 6 unpacked, 4 starting before the end so far.
    Start({"--blocks", "7", "--records", "300", "--step", "1", "--gap", "4", "--overlap-block", "4",
           "--start", "2026-03-02T08:00"});
    Data().DataFile = QStringLiteral("/somewhere/earlier.log");  // what was open before
    ASSERT_TRUE(DownloadSurveyorData());
    EXPECT_TRUE(Texts().isEmpty()) << qPrintable(Texts().join(QLatin1Char('|')));
    EXPECT_TRUE(Data().DataFile.isEmpty());  // the new data belongs to no file yet
    ExpectAsked(QStringLiteral("EHHHHHHHH"));  // the last block gets its "H" too
    const QStringList expected = Expected();
    const MeasurementData &d = Data();
    ASSERT_EQ(d.DataCount, 4 * 300 + 4 + 4);  // gaps before blocks 2 and 6, none before 4
    ASSERT_EQ(expected.size(), d.DataCount);
    ExpectSamples(1, d.DataCount, expected);
    EXPECT_EQ(SampleText(d, 301), QStringLiteral("-1.00 -1.00 -1.00"));
    EXPECT_EQ(d.DataValue[301], -1.0);
    EXPECT_EQ(d.DataStart, DateFromParts(2026, 3, 2, 8, 0));
    EXPECT_EQ(d.DataStop, DateAdd(QStringLiteral("n"), d.DataCount, d.DataStart));
    EXPECT_EQ(d.DataSource, QStringLiteral("Surveyor"));
    EXPECT_EQ(d.DataStopCode, -1);
    EXPECT_GT(d.DataMax, 0.0f);  // the figures are made, and the buttons on (the menu's test)
    EXPECT_EQ(host.waitHidden, 1);
    EXPECT_EQ(d.DataDate(301), GeneralDate(DateFromParts(2026, 3, 2, 13, 0)));
}

TEST_F(SurveyorSimTest, FaultsInsideABlockLetTheImportGoOn) {
    for (const char *fault : {"bad-date", "too-many-records"}) {
        SCOPED_TRACE(fault);
        host.boxes.clear();
        Start({"--blocks", "5", "--records", "20", "--gap", "2", "--fault", fault, "--fault-block", "2"});
        ASSERT_TRUE(DownloadSurveyorData());
        ASSERT_EQ(host.boxes.size(), 1u);
        if (QLatin1String(fault) == QLatin1String("bad-date"))
            EXPECT_EQ(host.LastBox(), QStringLiteral("Il formato della data è errato."));
        else
            EXPECT_TRUE(host.LastBox().contains(QStringLiteral("SpacchettaBlocco")));
        ExpectAsked(QStringLiteral("EHHHHHH"));
        const QStringList expected = Expected();
        ASSERT_EQ(Data().DataCount, expected.size());
        ExpectSamples(1, Data().DataCount, expected);
        Seriale().SetPortOpen(false);
        sim.reset();
    }
}

TEST_F(SurveyorSimTest, ATransferThatBreaksKeepsTheBlocksBeforeIt) {
    for (const char *fault : {"long-block", "cut-block"}) {
        SCOPED_TRACE(fault);
        host.boxes.clear();
        Data() = MeasurementData{};
        Start({"--blocks", "4", "--records", "30", "--fault", fault, "--fault-block", "2"});
        EXPECT_FALSE(DownloadSurveyorData());  // the block cut short sits out the 15 s
        EXPECT_EQ(Texts(), QStringList{QStringLiteral("Errore nella ricezione dei blocchi dei dati")});
        EXPECT_EQ(host.waitHidden, host.waitShown);
        // Block 0 stays; no statistics, no source, no buttons.
        ASSERT_EQ(Data().DataCount, 30);
        ExpectSamples(1, 30, Expected());
        EXPECT_TRUE(Data().DataMax == 0.0f && Data().DataSource.isEmpty() && !host.enabled[3]);
        Seriale().SetPortOpen(false);
        sim.reset();
    }
}

TEST_F(SurveyorSimTest, NoAnswerNoBlocksAndAClosedPort) {
    test::WriteDayLog(fresh.Path(QStringLiteral("day.log")), 12);
    ASSERT_TRUE(LoadFile(fresh.Path(QStringLiteral("day.log"))));
    const double start = Data().DataStart;

    Seriale().SetPortOpen(false);
    EXPECT_FALSE(DownloadSurveyorData());
    EXPECT_EQ(host.LastBox(), QStringLiteral("Nessuna porta seriale disponibile per la comunicazione"));
    EXPECT_EQ(host.waitShown, 0);

    Start({"--fault", "zero-blocks"});
    EXPECT_TRUE(DownloadSurveyorData());  // the caller reopens the views on what was there
    EXPECT_EQ(host.LastBox(),
              QStringLiteral("Non sono stati trovati dati validi all'interno della centralina"));
    ExpectAsked(QStringLiteral("EH"));
    Seriale().SetPortOpen(false);
    sim.reset();

    Start({"--fault", "no-answer"});
    QElapsedTimer waited;
    waited.start();
    EXPECT_FALSE(DownloadSurveyorData());
    EXPECT_GE(waited.elapsed(), 2000);
    EXPECT_EQ(host.LastBox(),
              QStringLiteral("Errore nello scaricamento dei dati. Nessuna risposta dalla seriale."));
    ExpectAsked(QStringLiteral("E"));
    EXPECT_EQ(host.waitHidden, host.waitShown);
    EXPECT_EQ(Data().DataSource, QStringLiteral("File"));
    EXPECT_EQ(Data().DataCount, 12);
    EXPECT_EQ(Data().DataStart, start);
}

// A count of fewer than six characters is taken, but only after the two seconds.
TEST_F(SurveyorSimTest, AShortCountReplyWaitsItsTwoSeconds) {
    Start({"--blocks", "2", "--records", "10", "--fault", "short-count"});
    QElapsedTimer waited;
    waited.start();
    ASSERT_TRUE(DownloadSurveyorData());
    EXPECT_GE(waited.elapsed(), 2000);
    EXPECT_EQ(Data().DataCount, 10);
    ExpectAsked(QStringLiteral("EHHH"));
}
