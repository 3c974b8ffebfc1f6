// fluxmere-cli end to end: the study of a file, conversions, and the logger's
// commands against the simulator.
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <csignal>
#include <cstdio>
#include <functional>

namespace {
struct Result {
    int code = -1;
    QString out, err;
};

class CliTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString options = dir.filePath(QStringLiteral("Fluxmere.ini"));
    QString log = dir.filePath(QStringLiteral("five.log"));

    void SetUp() override {
        fm::test::WriteBytes(
            log, fm::test::LogText({"Field Activity Log", "14/10/2026 08:00:00@14/10/2026 08:05:00@3", "1n",
                                    "5", "QL540-0042", "Cabina 3", "0.10 0.20 0.30  0", "0.50 0.50 0.50  0",
                                    "-1 -1 -1 0", "1.00 0.00 0.00  0", "0.20 0.20 0.20  0"}));
    }
    // `child` runs in the child before the program starts (limits, rights).
    Result Run(QStringList args, const std::function<void()> &child = {}) {
        QProcess p;
        args.prepend(options);
        args.prepend(QStringLiteral("--options"));
        if (child) p.setChildProcessModifier(child);
        p.start(QStringLiteral(FLUXMERE_CLI), args);
        p.waitForFinished(60000);
        // Killed by a signal (SIGXFSZ) is no answer at all.
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
                QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
    }
    // Files in the folder that are neither the given ones nor the inputs.
    QStringList Temporaries() const {
        return QDir(dir.path()).entryList({QStringLiteral(".*fluxmere-tmp*")}, QDir::Files | QDir::Hidden);
    }
};
}  // namespace

TEST_F(CliTest, InfoPrintsThePanelAndTheFindings) {
    const Result r = Run({"--lang", "en", "info", log});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(QStringLiteral("Samples: 5\n")));
    EXPECT_TRUE(r.out.contains(QStringLiteral("Short ID: QL540-0042\n")));
    EXPECT_TRUE(r.out.contains(QStringLiteral("[!] Samples above the threshold : 80,0%")))
        << r.out.toStdString();
    const Result high = Run({"--lang", "en", "--threshold", "0,9", "info", log});
    EXPECT_TRUE(high.out.contains(QStringLiteral("[!] Samples above the threshold : 20,0%")))
        << high.out.toStdString();
    EXPECT_FALSE(QFile::exists(options));  // read like the GUI, never written
}

TEST_F(CliTest, JsonCarriesTheFieldsByName) {
    const Result r = Run({"info", "--json", log});
    ASSERT_EQ(r.code, 0);
    const QJsonObject o = QJsonDocument::fromJson(r.out.toUtf8()).object();
    EXPECT_EQ(o[QStringLiteral("DataCount")].toInt(), 5);
    EXPECT_EQ(o[QStringLiteral("DataStart")].toString(), QStringLiteral("2026-10-14T08:00:00"));
    EXPECT_EQ(o[QStringLiteral("DataEnd")].toString(), QStringLiteral("2026-10-14T08:05:00"));
    EXPECT_EQ(o[QStringLiteral("DataStepUnit")].toString(), QStringLiteral("n"));
    EXPECT_DOUBLE_EQ(o[QStringLiteral("DataMax")].toDouble(), 1.0);
    EXPECT_DOUBLE_EQ(o[QStringLiteral("DataMin")].toDouble(), 0.35);
    EXPECT_EQ(o[QStringLiteral("MedianPos")].toInt(), 3);
    const QJsonArray w = o[QStringLiteral("warnings")].toArray();
    ASSERT_EQ(w.size(), 5);
    EXPECT_EQ(w[1].toObject()[QStringLiteral("level")].toInt(), 3);
}

// The mean is a float of 0.165: the panel rounds it as the median (a double) is
// rounded, and the JSON carries its own digits.
TEST_F(CliTest, FloatFieldsShowTheirOwnDigits) {
    const QString tie = dir.filePath(QStringLiteral("tie.log"));
    fm::test::WriteBytes(
        tie, fm::test::LogText({"Field Activity Log", "14/10/2026 08:00:00@14/10/2026 08:02:00@3", "1n", "2",
                                "ID", "Cabina", "0.16 0.00 0.00  0", "0.17 0.00 0.00  0"}));
    const Result r = Run({"--lang", "en", "info", tie});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out.count(QStringLiteral(": 0,16 µT\n")), 3) << r.out.toStdString();  // min, mean, median
    EXPECT_EQ(r.out.count(QStringLiteral(": 0,17 µT\n")), 1);                         // max
    const Result json = Run({"info", "--json", tie});
    EXPECT_TRUE(json.out.contains(QStringLiteral("\"DataMean\": 0.165,"))) << json.out.toStdString();
}

// Each command has its own help with its own options; an option it does not have is named
// with the command, wherever the program's own options stand.
TEST_F(CliTest, HelpVersionAndUnknownOptions) {
    const Result all = Run({"--help"});
    ASSERT_EQ(all.code, 0);
    EXPECT_TRUE(all.err.isEmpty());
    const std::pair<const char *, const char *> own[] = {
        {"info", "--json"},        {"convert", "--yes"},     {"list", "--by-value"},   {"export", "--tab"},
        {"chart", "--classes N"},  {"recover", "--lang"},    {"status", "--json"},     {"read-id", "--json"},
        {"write-id", "--port DEV"}, {"program", "--clock DATE"}, {"stop", "--port DEV"}, {"upload", "-o FILE"},
        {"import-surveyor", "-o FILE"}, {"live", "--count N"}};
    for (const auto &[command, option] : own) {
        SCOPED_TRACE(command);
        EXPECT_TRUE(all.out.contains(QStringLiteral("\n  %1 ").arg(QLatin1String(command))));
        const Result r = Run({command, "--help"});
        EXPECT_EQ(r.code, 0);
        EXPECT_TRUE(r.out.startsWith(QStringLiteral("Usage: fluxmere-cli [options] %1 ").arg(QLatin1String(command))))
            << qPrintable(r.out);
        EXPECT_TRUE(r.out.contains(QLatin1String(option))) << qPrintable(r.out);
    }
    EXPECT_FALSE(Run({"info", "--help"}).out.contains(QStringLiteral("--port")));
    EXPECT_EQ(Run({"--lang", "en", "export", "--help"}).out, Run({"export", "--help", "--lang", "en"}).out);

    const Result version = Run({"--version"});
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(version.out, QStringLiteral("fluxmere-cli %1.%2.%3\n")
                               .arg(FLUXMERE_VERSION_MAJOR)
                               .arg(FLUXMERE_VERSION_MINOR)
                               .arg(FLUXMERE_VERSION_REVISION));

    const std::pair<QStringList, QString> wrong[] = {
        {{"export", log, "--csv", "--foo", "-o", "x"}, "fluxmere-cli export: unknown option '--foo'"},
        {{"info", log, "--port", "/dev/null"}, "fluxmere-cli info: unknown option '--port'"},
        {{"--bar", "status"}, "fluxmere-cli status: unknown option '--bar'"},
        {{"--bar"}, "fluxmere-cli: unknown option '--bar'"},
        {{"frobnicate"}, "fluxmere-cli: unknown command 'frobnicate'"},
        {{"chart", log, "--kind"}, "fluxmere-cli chart: Missing value after '--kind'"},
    };
    for (const auto &[args, message] : wrong) {
        SCOPED_TRACE(qPrintable(args.join(QLatin1Char(' '))));
        const Result r = Run(args);
        EXPECT_EQ(r.code, 64);
        EXPECT_TRUE(r.err.contains(message)) << qPrintable(r.err);
        EXPECT_TRUE(r.out.isEmpty());
    }
    // The program's options after the command, as before it.
    EXPECT_TRUE(Run({"info", log, "--threshold", "0,9", "--lang", "en"})
                    .out.contains(QStringLiteral("[!] Samples above the threshold : 20,0%")));
}

// The list's heading figures and rows by name; a sample without figures has nulls.
TEST_F(CliTest, ListAsJson) {
    const Result r = Run({"list", "--json", log});
    ASSERT_EQ(r.code, 0) << qPrintable(r.err);
    QJsonParseError error{};
    const QJsonObject o = QJsonDocument::fromJson(r.out.toUtf8(), &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << qPrintable(r.out);
    EXPECT_EQ(o["ShortID"].toString(), QStringLiteral("QL540-0042"));
    EXPECT_EQ(o["LongID"].toString(), QStringLiteral("Cabina 3"));
    EXPECT_EQ(o["DataSource"].toString(), QStringLiteral("File"));
    EXPECT_FALSE(o.contains("DataIsCsv"));
    const QJsonArray rows = o["rows"].toArray();
    ASSERT_EQ(rows.size(), 5);
    const QJsonObject first = rows[0].toObject();
    EXPECT_EQ(first["date"].toString(), QStringLiteral("2026-10-14T08:00:00"));
    EXPECT_EQ(first["x"].toDouble(), 0.1);  // the 32-bit value by its own digits
    EXPECT_EQ(first["z"].toDouble(), 0.3);
    EXPECT_EQ(first["value"].toDouble(), 0.37);
    EXPECT_TRUE(r.out.contains(QStringLiteral("\"x\":0.1,\"y\":0.2,\"z\":0.3,")));
    EXPECT_EQ(rows[2].toObject()["date"].toString(), QStringLiteral("2026-10-14T08:02:00"));
    EXPECT_TRUE(rows[2].toObject()["x"].isNull());
    EXPECT_TRUE(rows[2].toObject()["value"].isNull());

    // By value: the order of the list by value, the sample without figures first.
    const Result byValue = Run({"list", "--json", "--by-value", log});
    const QJsonArray sorted = QJsonDocument::fromJson(byValue.out.toUtf8()).object()["rows"].toArray();
    ASSERT_EQ(sorted.size(), 5);
    QStringList dates;
    for (const QJsonValue &row : sorted) dates << row.toObject()["date"].toString();
    EXPECT_EQ(dates.join(QLatin1Char(' ')),
              QStringLiteral("2026-10-14T08:02:00 2026-10-14T08:04:00 2026-10-14T08:00:00 2026-10-14T08:01:00 "
                             "2026-10-14T08:03:00"));
}

TEST_F(CliTest, ConvertAndFailures) {
    const QString out = dir.filePath(QStringLiteral("out.log"));
    ASSERT_EQ(Run({"convert", log, out}).code, 0);
    EXPECT_TRUE(fm::test::ReadBytes(out).contains("\"-1 -1 -1 0\"\r\n"));
    // An existing file is replaced only with --yes.
    EXPECT_EQ(Run({"convert", log, out}).code, 1);
    EXPECT_EQ(Run({"--yes", "convert", log, out}).code, 0);
    const Result missing = Run({"--lang", "en", "info", dir.filePath(QStringLiteral("none.log"))});
    EXPECT_EQ(missing.code, 1);
    EXPECT_TRUE(missing.err.contains(QStringLiteral("The file does not exist.")));
    EXPECT_EQ(Run({"frobnicate"}).code, 64);
    EXPECT_EQ(Run({"info"}).code, 64);
    EXPECT_EQ(Run({"status"}).code, 64);  // the logger's commands need a port
}

TEST_F(CliTest, LoggerCommandsAgainstTheSimulator) {
    // A session recorded the year before last reads back in its own year.
    const int year = QDate::currentDate().year();
    QProcess sim;
    sim.start(QStringLiteral(FLUXMERE_SIM),
              {QStringLiteral("--fast"), QStringLiteral("--memory"), QStringLiteral("4096"), QStringLiteral("--clock"),
               QStringLiteral("%1-03-03T09:30").arg(year - 2)});
    ASSERT_TRUE(sim.waitForReadyRead(5000));
    const QString port = QString::fromLocal8Bit(sim.readLine()).trimmed();
    const Result recorded = Run({"--lang", "en", "status", "--port", port});
    EXPECT_TRUE(recorded.out.contains(QStringLiteral("Status: TERMINATO (FINE MEMORIA)")));
    EXPECT_TRUE(recorded.out.contains(QString::number(year - 2))) << recorded.out.toStdString();
    const QJsonObject st =
        QJsonDocument::fromJson(Run({"status", "--port", port, "--json", "--lang", "en"}).out.toUtf8()).object();
    EXPECT_EQ(st["MonitorText"].toString(), QStringLiteral("TERMINATO (FINE MEMORIA)"));
    EXPECT_EQ(st["MonitorState"].toInt(-1), 0);
    EXPECT_EQ(st["DataStart"].toString(), QStringLiteral("%1-03-03T09:30:00").arg(year - 2));
    EXPECT_EQ(st["DataCount"].toInt(), 571);
    EXPECT_EQ(st["DataStep"].toInt(), 10);
    EXPECT_EQ(st["DataStepUnit"].toString(), QStringLiteral("n"));
    ASSERT_EQ(Run({"write-id", "--port", port, "CAB-9", "Via Po 1"}).code, 0);
    EXPECT_TRUE(
        Run({"--lang", "en", "read-id", "--port", port}).out.contains(QStringLiteral("Short ID: CAB-9\n")));
    const QJsonObject codes =
        QJsonDocument::fromJson(Run({"read-id", "--json", "--port", port}).out.toUtf8()).object();
    EXPECT_EQ(codes["ShortID"].toString(), QStringLiteral("CAB-9"));
    EXPECT_EQ(codes["LongID"].toString(), QStringLiteral("Via Po 1"));
    EXPECT_EQ(Run({"write-id", "--port", port, "12345678901234567", "x"}).code, 1);
    const QString up = dir.filePath(QStringLiteral("up.log"));
    ASSERT_EQ(Run({"upload", "--port", port, "-o", up}).code, 0);
    EXPECT_EQ(Run({"info", "--json", up}).out.contains(QStringLiteral("\"DataCount\": 571")), true);
    EXPECT_TRUE(Run({"info", "--json", up}).out.contains(QStringLiteral("\"DataStart\": \"%1-03-03T09:30:00\"").arg(year - 2)));
    // The logger's clock takes today's date, and a start can be programmed for next year.
    ASSERT_EQ(Run({"--yes", "program", "--port", port, "--step", "5", "--unit", "n"}).code, 0);
    EXPECT_TRUE(Run({"--lang", "en", "status", "--port", port}).out.contains(QString::number(year)));
    ASSERT_EQ(Run({"--yes", "program", "--port", port, "--step", "5", "--unit", "n", "--start",
                   QStringLiteral("%1-01-02T10:00:00").arg(year + 1), "--stop",
                   QStringLiteral("%1-01-03T10:00:00").arg(year + 1)})
                  .code,
              0);
    const Result programmed = Run({"--lang", "en", "status", "--port", port});
    EXPECT_TRUE(programmed.out.contains(QStringLiteral("Samples: 288")));
    EXPECT_TRUE(programmed.out.contains(QString::number(year + 1))) << programmed.out.toStdString();
    // The clock of a test run stays settable.
    EXPECT_EQ(Run({"--yes", "program", "--port", port, "--step", "5", "--unit", "n", "--clock",
                   "2014-06-01T10:00:00", "--stop", "2014-06-02T10:00:00"})
                  .code,
              0);
    EXPECT_EQ(Run({"--lang", "en", "program", "--port", port, "--step", "5", "--unit", "s"})
                  .err.contains(QStringLiteral("smallest step is 10 seconds")),
              true);
    EXPECT_EQ(Run({"stop", "--port", port}).code, 0);
    sim.terminate();
    sim.waitForFinished(3000);
}

TEST_F(CliTest, ChartImagesForReports) {
    const QString jpg = dir.filePath(QStringLiteral("time.jpg")),
                  wmf = dir.filePath(QStringLiteral("bars.wmf"));
    ASSERT_EQ(Run({"chart", log, "--kind", "time", "-o", jpg}).code, 0);
    const QByteArray jpeg = fm::test::ReadBytes(jpg);
    const int sof = int(jpeg.indexOf(QByteArray("\xFF\xC0", 2)));
    ASSERT_GT(sof, 0);
    EXPECT_EQ(uchar(jpeg[sof + 5]) << 8 | uchar(jpeg[sof + 6]), 600);
    EXPECT_EQ(uchar(jpeg[sof + 7]) << 8 | uchar(jpeg[sof + 8]), 800);
    ASSERT_EQ(
        Run({"chart", log, "--kind", "stats", "--min", "0", "--max", "1", "--classes", "5", "-o", wmf}).code,
        0);
    EXPECT_EQ(fm::test::ReadBytes(wmf).left(4), QByteArray("\xD7\xCD\xC6\x9A", 4));
    // Limits the refresh would refuse, a format it cannot write, options of the other chart.
    const Result equal =
        Run({"--lang", "en", "chart", log, "--kind", "stats", "--min", "60", "--max", "70", "-o", wmf});
    EXPECT_EQ(equal.code, 1);
    EXPECT_TRUE(equal.err.contains(QStringLiteral("greater than the minimum")));
    EXPECT_EQ(Run({"chart", log, "--kind", "time", "-o", dir.filePath(QStringLiteral("x.gif"))}).code, 64);
    EXPECT_EQ(Run({"chart", log, "--kind", "time", "--classes", "5", "-o", jpg}).code, 64);
    EXPECT_EQ(Run({"chart", log, "--kind", "stats", "--classes", "12", "-o", jpg}).code, 64);
}

TEST_F(CliTest, LiveModeLeavesTheRealTimeLog) {
    QProcess sim;
    sim.start(QStringLiteral(FLUXMERE_SIM), {QStringLiteral("--fast")});
    ASSERT_TRUE(sim.waitForReadyRead(5000));
    const QString port = QString::fromLocal8Bit(sim.readLine()).trimmed();
    const QString rt = dir.filePath(QStringLiteral("rt.log"));
    const Result r = Run({"--lang", "en", "live", "--port", port, "--count", "2", "-o", rt});
    ASSERT_EQ(r.code, 0) << qPrintable(r.err);
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("1  "))) << qPrintable(lines[0]);
    EXPECT_TRUE(lines[0].contains(QStringLiteral("Bx = 1,20 µT")));  // the regional decimal mark
    EXPECT_TRUE(fm::test::ReadBytes(rt).contains("\r\n 2        \r\n"));
    EXPECT_TRUE(Run({"--lang", "en", "info", rt}).out.contains(QStringLiteral("Samples: 2")));
    // An earlier log stays unless the question is answered.
    EXPECT_EQ(Run({"live", "--port", port, "--count", "1", "-o", rt}).code, 1);
    EXPECT_EQ(Run({"live", "--port", port, "--count", "0"}).code, 64);
    sim.terminate();
    sim.waitForFinished(3000);
}

TEST_F(CliTest, ASessionProgrammedTodayUploadsWhatItRecorded) {
    // The simulated logger records one sample per step once started; 600 times faster here.
    QProcess sim;
    sim.start(QStringLiteral(FLUXMERE_SIM), {QStringLiteral("--fast"), QStringLiteral("--speed"), QStringLiteral("600")});
    ASSERT_TRUE(sim.waitForReadyRead(5000));
    const QString port = QString::fromLocal8Bit(sim.readLine()).trimmed();
    ASSERT_EQ(Run({"--yes", "program", "--port", port, "--step", "10", "--unit", "s"}).code, 0);
    QThread::msleep(1500);
    ASSERT_EQ(Run({"--yes", "stop", "--port", port}).code, 0);
    EXPECT_TRUE(Run({"--lang", "en", "status", "--port", port})
                    .out.contains(QStringLiteral("Status: TERMINATO (STOP UTENTE)")));
    const QString up = dir.filePath(QStringLiteral("today.log"));
    ASSERT_EQ(Run({"upload", "--port", port, "-o", up}).code, 0);
    const QJsonObject o =
        QJsonDocument::fromJson(Run({"info", "--json", up}).out.toUtf8()).object();
    EXPECT_GT(o.value(QStringLiteral("DataCount")).toInt(), 60);
    EXPECT_TRUE(o.value(QStringLiteral("DataStart")).toString().startsWith(
        QDate::currentDate().toString(Qt::ISODate)));
    EXPECT_EQ(o.value(QStringLiteral("DataStep")).toInt(), 10);
    sim.terminate();
    sim.waitForFinished(3000);
}

// Ctrl+C on a live run closes its log as the Stop button does: the count is filled in and
// the log loads. A lost logger and a log that cannot be made end with a word and a failure.
TEST_F(CliTest, LiveEndsWithAClosedLogWhateverStopsIt) {
    QProcess sim;
    sim.start(QStringLiteral(FLUXMERE_SIM), {QStringLiteral("--fast")});
    ASSERT_TRUE(sim.waitForReadyRead(5000));
    const QString port = QString::fromLocal8Bit(sim.readLine()).trimmed();
    const QString rt = dir.filePath(QStringLiteral("interrupted.log"));
    QProcess live;
    live.start(QStringLiteral(FLUXMERE_CLI), {"--options", options, "--lang", "en", "live", "--port", port,
                                              "--count", "100", "-o", rt});
    ASSERT_TRUE(live.waitForReadyRead(10000));  // the first sample is out
    ::kill(pid_t(live.processId()), SIGINT);
    ASSERT_TRUE(live.waitForFinished(10000));
    EXPECT_EQ(live.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(live.exitCode(), 128 + SIGINT);
    EXPECT_TRUE(QString::fromUtf8(live.readAllStandardError()).contains(QStringLiteral("Live mode interrupted")));
    const QJsonObject o = QJsonDocument::fromJson(Run({"info", "--json", rt}).out.toUtf8()).object();
    EXPECT_GE(o.value(QStringLiteral("DataCount")).toInt(), 1);

    // The logger goes away mid-run: polling ends after its failures, without spinning.
    const QString lostLog = dir.filePath(QStringLiteral("lost.log"));
    live.start(QStringLiteral(FLUXMERE_CLI), {"--options", options, "--lang", "en", "live", "--port", port,
                                              "--count", "100", "-o", lostLog});
    ASSERT_TRUE(live.waitForReadyRead(10000));
    sim.kill();
    sim.waitForFinished(3000);
    rusage before{}, after{};
    getrusage(RUSAGE_CHILDREN, &before);
    ASSERT_TRUE(live.waitForFinished(30000));
    getrusage(RUSAGE_CHILDREN, &after);
    const auto seconds = [](const rusage &u) {
        return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) + double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
    };
    // Spinning on the hung-up device took all of the ten seconds the failures last.
    EXPECT_LT(seconds(after) - seconds(before), 5.0) << "the lost logger was waited for by spinning";
    EXPECT_EQ(live.exitCode(), 1);
    EXPECT_TRUE(QString::fromUtf8(live.readAllStandardError()).contains(QStringLiteral("stopped answering")));
    EXPECT_EQ(Run({"info", "--json", lostLog}).code, 0);

    // A log that cannot be made: no live mode at all.
    QProcess again;
    again.start(QStringLiteral(FLUXMERE_SIM), {QStringLiteral("--fast")});
    ASSERT_TRUE(again.waitForReadyRead(5000));
    const QString port2 = QString::fromLocal8Bit(again.readLine()).trimmed();
    const Result nowhere = Run({"--lang", "en", "live", "--port", port2, "--count", "1", "-o",
                                dir.filePath(QStringLiteral("no/such/folder/rt.log"))});
    EXPECT_EQ(nowhere.code, 1);
    EXPECT_TRUE(nowhere.err.contains(QStringLiteral("OpenLastLog"))) << qPrintable(nowhere.err);
    EXPECT_TRUE(nowhere.out.isEmpty());
    again.terminate();
    again.waitForFinished(3000);
}

TEST_F(CliTest, RecoverClosesALogLeftOpenByACrash) {
    const QString crashed = dir.filePath(QStringLiteral("crashed.log"));
    fm::test::WriteBytes(crashed, "\"Field Activity Log\"\r\n\"14/10/2026 08:00:00\"\r\n\" 3s\"\r\n          \r\n"
                                  "\"CAB\"\r\n\"Via Po\"\r\n\"0.10 0.20 0.30  0\"\r\n\"0.40 0.50 0.60  0\"\r\n\"0.7");
    EXPECT_EQ(Run({"info", crashed}).code, 1);  // refused, and nobody said yes
    const Result r = Run({"--lang", "en", "recover", crashed});
    ASSERT_EQ(r.code, 0) << qPrintable(r.err);
    EXPECT_EQ(r.out, QStringLiteral("Log recovered: 2 samples.\n"));
    EXPECT_TRUE(fm::test::ReadBytes(crashed).endsWith("\"0.40 0.50 0.60  0\"\r\n"));
    EXPECT_TRUE(Run({"--lang", "en", "info", crashed}).out.contains(QStringLiteral("Samples: 2\n")));
    const Result again = Run({"--lang", "en", "recover", crashed});
    EXPECT_EQ(again.code, 1);
    EXPECT_TRUE(again.err.contains(QStringLiteral("not a real-time log left open")));
}

TEST_F(CliTest, ImportSurveyorWritesTheLogOnlyWhenDataCame) {
    const auto unit = [](QProcess &p, const QStringList &args) {
        p.start(QStringLiteral(FLUXMERE_SURVEYOR_SIM),
                QStringList{"--fast", "--start", "2026-03-02T08:00"} + args);
        EXPECT_TRUE(p.waitForReadyRead(5000));
        return QString::fromLocal8Bit(p.readLine()).trimmed();
    };
    const QString out = dir.filePath(QStringLiteral("surveyor.log"));
    {
        QProcess sim;
        const QString port = unit(sim, {"--blocks", "3", "--records", "40", "--gap", "5"});
        const Result r = Run({"--lang", "en", "import-surveyor", "--port", port, "-o", out});
        ASSERT_EQ(r.code, 0) << qPrintable(r.err);
        EXPECT_TRUE(r.out.contains(QStringLiteral("Samples: 85")));
        const Result info = Run({"info", "--json", out});
        EXPECT_TRUE(info.out.contains(QStringLiteral("\"DataCount\": 85"))) << qPrintable(info.out);
        EXPECT_TRUE(info.out.contains(QStringLiteral("\"DataStart\": \"2026-03-02T08:00:00\"")));
        // An existing log is replaced only with --yes.
        const QByteArray before = fm::test::ReadBytes(out);
        EXPECT_EQ(Run({"import-surveyor", "--port", port, "-o", out}).code, 1);
        EXPECT_EQ(fm::test::ReadBytes(out), before);
        EXPECT_EQ(Run({"--yes", "import-surveyor", "--port", port, "-o", out}).code, 0);
        EXPECT_EQ(Run({"import-surveyor", "--port", port}).code, 64);
    }
    for (const char *fault : {"zero-blocks", "cut-block"}) {
        SCOPED_TRACE(fault);
        QProcess sim;
        const QString port =
            unit(sim, {"--blocks", "1", "--records", "10", "--fault", fault, "--fault-block", "0"});
        const QString none = dir.filePath(QStringLiteral("none.log"));
        const Result r = Run({"import-surveyor", "--port", port, "-o", none});
        EXPECT_EQ(r.code, 1);
        EXPECT_FALSE(r.err.isEmpty());
        EXPECT_FALSE(QFile::exists(none));
    }
}

// A "File Centralina" file: its figures by name, a log made of it, and the RF chart,
// which a log does not have.
TEST_F(CliTest, FileCentralinaInfoConvertAndRfChart) {
    const QString csv = dir.filePath(QStringLiteral("unit.csv"));
    fm::test::WriteBytes(csv, "14/10/2026 08:00:00,0.10,0.20,0.30,12.5,0.35,0.37\n"
                              "14/10/2026 08:00:05,0.50,0.50,0.50,-100,1.5,0.87\n"
                              "14/10/2026 08:00:10,1.00,0.00,0.00,13.5,0.8,1\n");
    const Result r = Run({"info", "--json", csv});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    const QJsonObject o = QJsonDocument::fromJson(r.out.toUtf8()).object();
    EXPECT_EQ(o["DataSource"].toString(), QStringLiteral("File Centralina"));
    EXPECT_TRUE(o["DataIsCsv"].toBool());
    EXPECT_EQ(o["DataCount"].toInt(), 3);
    EXPECT_EQ(o["DataStep"].toInt(), 5);
    EXPECT_EQ(o["DataEnd"].toString(), QStringLiteral("2026-10-14T08:00:15"));
    EXPECT_EQ(o["RfMax"].toDouble(), 1.5);
    EXPECT_EQ(o["RfMin"].toDouble(), 0.35);  // the 32-bit value by its own digits
    EXPECT_EQ(o["AuxMax"].toDouble(), 12.5);  // one value behind: 13.5 is not in it
    EXPECT_EQ(o["AuxMean"].toDouble(), 12.5);
    EXPECT_EQ(o["DataMax"].toDouble(), 1.0);
    EXPECT_FALSE(QJsonDocument::fromJson(Run({"info", "--json", log}).out.toUtf8()).object().contains("DataIsCsv"));

    const Result text = Run({"--lang", "en", "info", csv});
    EXPECT_TRUE(text.out.contains(QStringLiteral("RF field maximum (V/m): 1,5\n"))) << text.out.toStdString();
    EXPECT_TRUE(text.out.contains(QStringLiteral("Median: ---\n"))) << text.out.toStdString();

    const QString out = dir.filePath(QStringLiteral("unit.log"));
    ASSERT_EQ(Run({"convert", csv, out}).code, 0);
    const Result back = Run({"info", "--json", out});
    const QJsonObject b = QJsonDocument::fromJson(back.out.toUtf8()).object();
    EXPECT_EQ(b["DataSource"].toString(), QStringLiteral("File"));
    EXPECT_EQ(b["DataCount"].toInt(), 3);

    const QString png = dir.filePath(QStringLiteral("rf.png"));
    ASSERT_EQ(Run({"chart", csv, "--kind", "rf", "-o", png}).code, 0);
    EXPECT_GT(QFile(png).size(), 1000);
    const Result refused = Run({"chart", log, "--kind", "rf", "-o", dir.filePath(QStringLiteral("no.png"))});
    EXPECT_EQ(refused.code, 64);
    EXPECT_TRUE(refused.err.contains(QStringLiteral("no RF field"))) << refused.err.toStdString();
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("no.png"))));
    EXPECT_EQ(Run({"chart", csv, "--kind", "rf", "--classes", "5", "-o", png}).code, 64);
}

namespace {
// Runs the program as a user without rights over root's files (only when the tests run as root).
void Unprivileged() {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(99);
}
// A file-size limit: every write past 100 bytes fails, as on a full disk.
void SmallDisk() {
    const rlimit r{100, 100};
    ::setrlimit(RLIMIT_FSIZE, &r);
}
}  // namespace

TEST_F(CliTest, ExportAndChartAskBeforeReplacing) {
    const QString precious = dir.filePath(QStringLiteral("precious.log"));
    fm::test::WriteBytes(precious, "a measurement");
    const Result table = Run({"--lang", "en", "export", log, "--csv", "-o", precious});
    EXPECT_EQ(table.code, 1);
    EXPECT_TRUE(table.err.contains(QStringLiteral("The file already exists. Replace it?")))
        << qPrintable(table.err);
    EXPECT_TRUE(table.err.contains(QStringLiteral("The file could not be saved.")));
    EXPECT_EQ(fm::test::ReadBytes(precious), QByteArray("a measurement"));
    const QString png = dir.filePath(QStringLiteral("chart.png"));
    fm::test::WriteBytes(png, "an earlier chart");
    EXPECT_EQ(Run({"chart", log, "--kind", "time", "-o", png}).code, 1);
    EXPECT_EQ(fm::test::ReadBytes(png), QByteArray("an earlier chart"));

    ASSERT_EQ(Run({"--yes", "export", log, "--tab", "-o", precious}).code, 0);
    EXPECT_TRUE(fm::test::ReadBytes(precious).contains("\t"));
    ASSERT_EQ(Run({"--yes", "chart", log, "--kind", "time", "-o", png}).code, 0);
    EXPECT_TRUE(fm::test::ReadBytes(png).startsWith("\x89PNG"));
}

// Every format on a disk that fills up: the program says so, lives on, and the old
// image stays whole.
TEST_F(CliTest, AFullDiskLosesNoFile) {
    for (const char *ext : {"png", "jpg", "pdf", "svg", "wmf"}) {
        const QString out = dir.filePath(QStringLiteral("chart.") + QLatin1String(ext));
        fm::test::WriteBytes(out, "an earlier chart");
        const Result r =
            Run({"--lang", "en", "--yes", "chart", log, "--kind", "stats", "-o", out}, SmallDisk);
        EXPECT_EQ(r.code, 1) << ext;
        EXPECT_TRUE(r.err.contains(QStringLiteral("File too large"))) << ext << qPrintable(r.err);
        EXPECT_EQ(fm::test::ReadBytes(out), QByteArray("an earlier chart")) << ext;
    }
    const QString table = dir.filePath(QStringLiteral("table.csv")),
                  copy = dir.filePath(QStringLiteral("copy.log"));
    const Result csv = Run({"--lang", "en", "export", log, "--csv", "-o", table}, SmallDisk);
    EXPECT_EQ(csv.code, 1);
    EXPECT_TRUE(csv.err.contains(QStringLiteral("Error Number     : 61"))) << qPrintable(csv.err);
    const Result convert = Run({"convert", log, copy}, SmallDisk);
    EXPECT_EQ(convert.code, 1);
    EXPECT_FALSE(QFile::exists(table) || QFile::exists(copy));
    EXPECT_TRUE(Temporaries().isEmpty()) << qPrintable(Temporaries().join(QLatin1Char(' ')));
}

TEST_F(CliTest, AReadOnlyFileIsNotReplaced) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "runs the program as another user, which needs root";
    }
    const QString out = dir.filePath(QStringLiteral("kept.log"));
    fm::test::WriteBytes(out, "read-only");
    ::chmod(QFile::encodeName(dir.path()).constData(), 0777);
    ::chmod(QFile::encodeName(log).constData(), 0644);
    ::chmod(QFile::encodeName(out).constData(), 0444);
    ASSERT_EQ(::chown(QFile::encodeName(out).constData(), 65534, 65534), 0);
    const Result r = Run({"--lang", "en", "--yes", "convert", log, out}, Unprivileged);
    ASSERT_NE(r.code, 99) << "could not drop the rights";
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("Permission denied: ") + out)) << qPrintable(r.err);
    EXPECT_EQ(fm::test::ReadBytes(out), QByteArray("read-only"));
    EXPECT_TRUE(Temporaries().isEmpty());
}

// Names that are not UTF-8 (Latin-1 "é"), given on the command line, read and written
// under their own bytes.
TEST_F(CliTest, NamesThatAreNotUtf8) {
    const QByteArray folder = QFile::encodeName(dir.path());
    ASSERT_EQ(::link(QFile::encodeName(log).constData(), (folder + "/caf\xE9.log").constData()), 0);
    QProcess p;
    // The shell passes the bytes as they are; QProcess would pass them as text.
    p.start(QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"),
             QStringLiteral("cd \"$1\" && \"$2\" --options \"$3\" --lang en convert \"$(printf "
                            "'caf\\351.log')\" \"$(printf 'out\\351.log')\""),
             QStringLiteral("sh"), dir.path(), QStringLiteral(FLUXMERE_CLI), options});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    std::FILE *f = std::fopen((folder + "/out\xE9.log").constData(), "rb");
    ASSERT_TRUE(f);
    char head[21] = {};
    EXPECT_EQ(std::fread(head, 1, 20, f), 20u);
    std::fclose(f);
    EXPECT_EQ(QByteArray(head), QByteArray("\"Field Activity Log\""));
}

TEST_F(CliTest, APortTheUserMayNotOpenGivesTheHint) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "runs the program as another user, which needs root";
    }
    QProcess sim;
    sim.start(QStringLiteral(FLUXMERE_SIM), {QStringLiteral("--fast")});
    ASSERT_TRUE(sim.waitForReadyRead(5000));
    const QString port = QString::fromLocal8Bit(sim.readLine()).trimmed();
    ::chmod(QFile::encodeName(dir.path()).constData(), 0777);
    const Result r = Run({"--lang", "en", "status", "--port", port}, Unprivileged);
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("dialout"))) << qPrintable(r.err);
    sim.terminate();
    sim.waitForFinished(3000);
}

// Each way an upload can go wrong ends the command with what happened and no file.
TEST_F(CliTest, EveryFailedUploadSaysWhatHappened) {
    const std::pair<const char *, const char *> faults[] = {
        {"no-answer", "No reply (timed out)"},
        {"late", "No reply (timed out)"},
        {"refuse", "The QL540 refused the command."},
        {"bad-crc", "The reply of the QL540 is damaged (wrong CRC)."},
        {"stray-byte", "The reply of the QL540 is incomplete or not valid."},
        {"truncate", "The reply of the QL540 is incomplete or not valid."},
        {"short", "The reply of the QL540 is incomplete or not valid."},
        {"silent-upload", "The reply of the QL540 is incomplete or not valid."},
        {"wrong-command", "The QL540 answered another command."},
        {"bad-signature", "The memory of the QL540 holds no valid data."},
        {"no-samples", "The memory of the QL540 holds no valid data."},
    };
    const QString up = dir.filePath(QStringLiteral("up.log"));
    for (const auto &[kind, text] : faults) {
        QProcess sim;
        sim.start(QStringLiteral(FLUXMERE_SIM),
                  {QStringLiteral("--fast"), QStringLiteral("--fault"), QLatin1String(kind),
                   QStringLiteral("--fault-command"), QStringLiteral("4")});
        ASSERT_TRUE(sim.waitForReadyRead(5000));
        const QString port = QString::fromLocal8Bit(sim.readLine()).trimmed();
        const Result r = Run({"--lang", "en", "upload", "--port", port, "-o", up});
        EXPECT_EQ(r.code, 1) << kind;
        EXPECT_TRUE(r.err.contains(QLatin1String(text))) << kind << ": " << qPrintable(r.err);
        EXPECT_FALSE(r.err.contains(QStringLiteral("Subscript"))) << kind;
        EXPECT_FALSE(QFile::exists(up)) << kind;
        sim.terminate();
        sim.waitForFinished(3000);
    }
}

TEST_F(CliTest, ALoggerUnpluggedMidUploadIsReported) {
    // At the real line speed the memory takes seconds to come: time to pull the plug.
    QProcess sim;
    sim.start(QStringLiteral(FLUXMERE_SIM), {QStringLiteral("--memory"), QStringLiteral("65536")});
    ASSERT_TRUE(sim.waitForReadyRead(5000));
    const QString port = QString::fromLocal8Bit(sim.readLine()).trimmed();
    const QString up = dir.filePath(QStringLiteral("up.log"));
    QProcess cli;
    cli.start(QStringLiteral(FLUXMERE_CLI),
              {QStringLiteral("--options"), options, QStringLiteral("--lang"), QStringLiteral("en"),
               QStringLiteral("upload"), QStringLiteral("--port"), port, QStringLiteral("-o"), up});
    QThread::msleep(3000);
    sim.kill();
    sim.waitForFinished(3000);
    ASSERT_TRUE(cli.waitForFinished(30000));
    EXPECT_EQ(cli.exitCode(), 1);
    const QString err = QString::fromUtf8(cli.readAllStandardError());
    EXPECT_TRUE(err.contains(QStringLiteral("The link to the QL540 was lost"))) << qPrintable(err);
    EXPECT_FALSE(QFile::exists(up));
}
