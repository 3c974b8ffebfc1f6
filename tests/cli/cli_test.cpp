// fluxmere-cli end to end: one run down each command's path, its options and its
// answers; what lies below (file formats, the safe writer, the link) has its own tests.
#include "support/simulator.h"
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
#include <functional>
#include <optional>

using fm::test::ReadBytes;
using fm::test::Simulator;
using fm::test::WriteBytes;

namespace {
struct Result {
    int code = -1;
    QString out, err;
    QJsonObject Json() const { return QJsonDocument::fromJson(out.toUtf8()).object(); }
};

// Runs the program as a user without rights over root's files (only when the tests run as root).
void Unprivileged() {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(99);
}
// A file-size limit: every write past 100 bytes fails, as on a full disk.
void SmallDisk() {
    const rlimit r{100, 100};
    ::setrlimit(RLIMIT_FSIZE, &r);
}

class CliTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString options = dir.filePath(QStringLiteral("Fluxmere.ini"));
    QString log = dir.filePath(QStringLiteral("five.log"));

    void SetUp() override { WriteBytes(log, fm::test::FiveSampleLog()); }
    QString Path(const char *name) const { return dir.filePath(QLatin1String(name)); }
    QStringList Args(QStringList args) const { return QStringList{"--options", options} + args; }
    // `child` runs in the child before the program starts (limits, rights).
    Result Run(const QStringList &args, const std::function<void()> &child = {}) {
        QProcess p;
        if (child) p.setChildProcessModifier(child);
        p.start(QStringLiteral(FLUXMERE_CLI), Args(args));
        p.waitForFinished(60000);
        // Killed by a signal (SIGXFSZ) is no answer at all.
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
                QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
    }
    // Hidden files the safe writer left in the folder.
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
    EXPECT_TRUE(r.out.contains(QStringLiteral("[!] Samples above the threshold : 80,0%"))) << r.out.toStdString();
    // The program's options after the command, as before it.
    EXPECT_TRUE(Run({"info", log, "--threshold", "0,9", "--lang", "en"})
                    .out.contains(QStringLiteral("[!] Samples above the threshold : 20,0%")));
    EXPECT_FALSE(QFile::exists(options));  // read like the GUI, never written

    const QJsonObject o = Run({"info", "--json", log}).Json();
    EXPECT_EQ(o["DataCount"].toInt(), 5);
    EXPECT_EQ(o["DataEnd"].toString(), QStringLiteral("2026-10-14T08:05:00"));
    EXPECT_DOUBLE_EQ(o["DataMin"].toDouble(), 0.35);
    EXPECT_FALSE(o.contains("DataIsCsv"));
    ASSERT_EQ(o["warnings"].toArray().size(), 5);
    EXPECT_EQ(o["warnings"].toArray()[1].toObject()["level"].toInt(), 3);

    // Five minutes, one without data: a short period that holds 4 of its 5 samples, too
    // little for the daily medians to decide anything; the maximum decides the limits.
    const QJsonObject e = o["exposure"].toObject();
    const QJsonArray days = e["Median24h"].toArray();
    ASSERT_EQ(days.size(), 1);
    const QJsonObject day = days[0].toObject();
    EXPECT_EQ(day["start"].toString(), QStringLiteral("2026-10-14T08:00:00"));
    EXPECT_DOUBLE_EQ(day["median"].toDouble(), 0.62);  // 0.37 and 0.87 in the middle
    EXPECT_EQ(day["valid"].toInt(), 4);
    EXPECT_DOUBLE_EQ(day["coverage"].toDouble(), 0.8);
    EXPECT_FALSE(day["complete"].toBool());
    EXPECT_DOUBLE_EQ(e["P90"].toDouble(), 1.0);
    EXPECT_DOUBLE_EQ(e["SecondsAboveThreshold"].toDouble(), 60 * e["ShareAboveThreshold"].toDouble() * 4);
    const QJsonArray hours = e["HourlyMean"].toArray();
    ASSERT_EQ(hours.size(), 24);
    EXPECT_TRUE(hours[7].isNull());
    EXPECT_NEAR(hours[8].toDouble(), (0.37 + 0.87 + 1.0 + 0.35) / 4, 1e-9);
    QStringList verdicts;
    for (const QJsonValue &r : e["References"].toArray())
        verdicts << r["basis"].toString() + QLatin1Char(' ') + r["verdict"].toString();
    EXPECT_EQ(verdicts, QStringList({"median24h not conclusive", "median24h not conclusive", "maximum met",
                                     "maximum met", "maximum met", "maximum met"}));
}

// Each command has its own help with its own options; an option it does not have is named
// with the command, wherever the program's own options stand.
TEST_F(CliTest, HelpVersionAndUnknownOptions) {
    const Result all = Run({"--help"});
    ASSERT_EQ(all.code, 0);
    EXPECT_TRUE(all.err.isEmpty());
    for (const char *command : {"info", "convert", "list", "export", "chart", "recover", "status", "read-id",
                                "write-id", "program", "stop", "upload", "import-surveyor", "live"})
        EXPECT_TRUE(all.out.contains(QStringLiteral("\n  %1 ").arg(QLatin1String(command)))) << command;
    const Result own = Run({"chart", "--help"});
    EXPECT_EQ(own.code, 0);
    EXPECT_TRUE(own.out.startsWith(QStringLiteral("Usage: fluxmere-cli [options] chart "))) << qPrintable(own.out);
    EXPECT_TRUE(own.out.contains(QStringLiteral("--classes N"))) << qPrintable(own.out);
    EXPECT_FALSE(Run({"info", "--help"}).out.contains(QStringLiteral("--port")));
    EXPECT_EQ(Run({"--lang", "en", "export", "--help"}).out, Run({"export", "--help", "--lang", "en"}).out);
    EXPECT_EQ(Run({"--version"}).out, QStringLiteral("fluxmere-cli %1.%2.%3\n")
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
        {{"info"}, "info takes one file"},
        {{"status"}, "need --port DEV"},
    };
    for (const auto &[args, message] : wrong) {
        SCOPED_TRACE(qPrintable(args.join(QLatin1Char(' '))));
        const Result r = Run(args);
        EXPECT_EQ(r.code, 64);
        EXPECT_TRUE(r.err.contains(message)) << qPrintable(r.err);
        EXPECT_TRUE(r.out.isEmpty());
    }
}

// The list's heading figures and rows by name; a sample without figures has nulls.
TEST_F(CliTest, ListAsJson) {
    const Result r = Run({"list", "--json", log});
    ASSERT_EQ(r.code, 0) << qPrintable(r.err);
    const QJsonObject o = r.Json();
    EXPECT_EQ(o["ShortID"].toString(), QStringLiteral("QL540-0042"));
    EXPECT_EQ(o["DataSource"].toString(), QStringLiteral("File"));
    const QJsonArray rows = o["rows"].toArray();
    ASSERT_EQ(rows.size(), 5);
    EXPECT_EQ(rows[0].toObject()["date"].toString(), QStringLiteral("2026-10-14T08:00:00"));
    EXPECT_EQ(rows[0].toObject()["value"].toDouble(), 0.37);
    EXPECT_TRUE(r.out.contains(QStringLiteral("\"x\":0.1,\"y\":0.2,\"z\":0.3,")));  // the floats' own digits
    EXPECT_TRUE(rows[2].toObject()["x"].isNull());
    EXPECT_TRUE(rows[2].toObject()["value"].isNull());

    // By value: the order of the list by value, the sample without figures first.
    QStringList dates;
    for (const QJsonValue &row : Run({"list", "--json", "--by-value", log}).Json()["rows"].toArray())
        dates << row.toObject()["date"].toString().right(5);
    EXPECT_EQ(dates.join(QLatin1Char(' ')), QStringLiteral("02:00 04:00 00:00 01:00 03:00"));
}

// An existing file is replaced only with --yes (the chart and the Surveyor import ask the
// same way); a refusal says why and leaves it whole.
TEST_F(CliTest, ConvertAndExportAskBeforeReplacing) {
    const QString out = Path("out.log");
    ASSERT_EQ(Run({"convert", log, out}).code, 0);
    EXPECT_TRUE(ReadBytes(out).contains("\"-1 -1 -1 0\"\r\n"));
    EXPECT_EQ(Run({"convert", log, out}).code, 1);
    EXPECT_EQ(Run({"--yes", "convert", log, out}).code, 0);
    const Result missing = Run({"--lang", "en", "info", Path("none.log")});
    EXPECT_EQ(missing.code, 1);
    EXPECT_TRUE(missing.err.contains(QStringLiteral("The file does not exist.")));

    const QString precious = Path("precious.log");
    WriteBytes(precious, "a measurement");
    const Result table = Run({"--lang", "en", "export", log, "--csv", "-o", precious});
    EXPECT_EQ(table.code, 1);
    EXPECT_TRUE(table.err.contains(QStringLiteral("The file already exists. Replace it?"))) << qPrintable(table.err);
    EXPECT_TRUE(table.err.contains(QStringLiteral("The file could not be saved.")));
    EXPECT_EQ(ReadBytes(precious), QByteArray("a measurement"));
    ASSERT_EQ(Run({"--yes", "export", log, "--tab", "-o", precious}).code, 0);
    EXPECT_TRUE(ReadBytes(precious).contains("\t"));
    // A full disk: the program lives on (no SIGXFSZ) and says why; the old file stays whole.
    const Result full = Run({"--lang", "en", "--yes", "export", log, "--csv", "-o", precious}, SmallDisk);
    EXPECT_EQ(full.code, 1);
    EXPECT_TRUE(full.err.contains(QStringLiteral("Error Number     : 61"))) << qPrintable(full.err);
    EXPECT_TRUE(ReadBytes(precious).contains("\t"));
    EXPECT_TRUE(Temporaries().isEmpty()) << qPrintable(Temporaries().join(QLatin1Char(' ')));
}

TEST_F(CliTest, ChartImagesAndTheirRefusals) {
    const QString jpg = Path("time.jpg"), wmf = Path("bars.wmf");  // the question to replace: as export's
    ASSERT_EQ(Run({"chart", log, "--kind", "time", "-o", jpg}).code, 0);
    EXPECT_TRUE(ReadBytes(jpg).startsWith("\xFF\xD8"));
    ASSERT_EQ(Run({"chart", log, "--kind", "stats", "--min", "0", "--max", "1", "--classes", "5", "-o", wmf}).code, 0);
    EXPECT_EQ(ReadBytes(wmf).left(4), QByteArray("\xD7\xCD\xC6\x9A", 4));

    // Limits the refresh would refuse, a format it cannot write, options of the other chart,
    // an RF chart of a log, which has no RF field.
    const QString none = Path("none.png");
    const std::tuple<QStringList, int, const char *> refused[] = {
        {{"--kind", "stats", "--min", "60", "--max", "70", "-o", none}, 1, "greater than the minimum"},
        {{"--kind", "time", "-o", Path("x.gif")}, 64, ".jpg, .wmf"},
        {{"--kind", "time", "--classes", "5", "-o", none}, 64, "belong to the statistics chart"},
        {{"--kind", "stats", "--classes", "12", "-o", none}, 64, "3 to 11"},
        {{"--kind", "rf", "-o", none}, 64, "no RF field"},
    };
    for (const auto &[args, code, message] : refused) {
        const Result r = Run(QStringList{"--lang", "en", "chart", log} + args);
        EXPECT_EQ(r.code, code) << message;
        EXPECT_TRUE(r.err.contains(QLatin1String(message))) << qPrintable(r.err);
    }
    EXPECT_FALSE(QFile::exists(none));
}

// Names that are not UTF-8 (Latin-1 "é") come from the command line as their own bytes.
TEST_F(CliTest, NamesThatAreNotUtf8) {
    const QByteArray folder = QFile::encodeName(dir.path());
    ASSERT_EQ(::link(QFile::encodeName(log).constData(), (folder + "/caf\xE9.log").constData()), 0);
    QProcess p;
    // The shell passes the bytes as they are; QProcess would pass them as text.
    p.start(QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"),
             QStringLiteral("cd \"$1\" && \"$2\" --options \"$3\" convert \"$(printf 'caf\\351.log')\" "
                            "\"$(printf 'out\\351.log')\""),
             QStringLiteral("sh"), dir.path(), QStringLiteral(FLUXMERE_CLI), options});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    EXPECT_EQ(::access((folder + "/out\xE9.log").constData(), R_OK), 0);  // written under the same bytes
}

TEST_F(CliTest, LoggerCommandsAgainstTheSimulator) {
    // A session recorded the year before last reads back in its own year.
    const int year = QDate::currentDate().year();
    Simulator sim(dir.path(), {"--fast", "--memory", "4096", "--clock", QStringLiteral("%1-03-03T09:30").arg(year - 2)});
    const QString port = sim.device;
    ASSERT_FALSE(port.isEmpty());
    EXPECT_TRUE(Run({"--lang", "en", "status", "--port", port})
                    .out.contains(QStringLiteral("Status: TERMINATO (FINE MEMORIA)")));
    const QJsonObject st = Run({"status", "--port", port, "--json"}).Json();
    EXPECT_EQ(st["MonitorState"].toInt(-1), 0);
    EXPECT_EQ(st["DataStart"].toString(), QStringLiteral("%1-03-03T09:30:00").arg(year - 2));
    EXPECT_EQ(st["DataCount"].toInt(), 571);

    ASSERT_EQ(Run({"write-id", "--port", port, "CAB-9", "Via Po 1"}).code, 0);
    EXPECT_TRUE(Run({"--lang", "en", "read-id", "--port", port}).out.contains(QStringLiteral("Short ID: CAB-9\n")));
    EXPECT_EQ(Run({"read-id", "--json", "--port", port}).Json()["LongID"].toString(), QStringLiteral("Via Po 1"));
    EXPECT_EQ(Run({"write-id", "--port", port, "12345678901234567", "x"}).code, 1);

    ASSERT_EQ(Run({"upload", "--port", port, "-o", Path("up.log")}).code, 0);
    EXPECT_EQ(Run({"info", "--json", Path("up.log")}).Json()["DataCount"].toInt(), 571);

    // A start programmed for next year, and the clock of a test run set by hand.
    ASSERT_EQ(Run({"--yes", "program", "--port", port, "--step", "5", "--unit", "n", "--start",
                   QStringLiteral("%1-01-02T10:00:00").arg(year + 1), "--stop",
                   QStringLiteral("%1-01-03T10:00:00").arg(year + 1)})
                  .code,
              0);
    const Result programmed = Run({"--lang", "en", "status", "--port", port});
    EXPECT_TRUE(programmed.out.contains(QStringLiteral("Samples: 288")));
    EXPECT_TRUE(programmed.out.contains(QString::number(year + 1))) << programmed.out.toStdString();
    EXPECT_EQ(Run({"--yes", "program", "--port", port, "--step", "5", "--unit", "n", "--clock",
                   "2014-06-01T10:00:00", "--stop", "2014-06-02T10:00:00"}).code, 0);
    EXPECT_TRUE(Run({"--lang", "en", "program", "--port", port, "--step", "5", "--unit", "s"})
                    .err.contains(QStringLiteral("smallest step is 10 seconds")));
    EXPECT_EQ(Run({"stop", "--port", port}).code, 0);

    // A port the user may not open says what to do about it.
    if (::geteuid() == 0) {
        ::chmod(QFile::encodeName(dir.path()).constData(), 0777);
        const Result r = Run({"--lang", "en", "status", "--port", port}, Unprivileged);
        EXPECT_EQ(r.code, 1);
        EXPECT_TRUE(r.err.contains(QStringLiteral("dialout"))) << qPrintable(r.err);
    }
}

// Each way an upload can go wrong ends the command with what happened and no file; the
// link's own faults are told apart in its tests, these are the ones of the upload's reply.
TEST_F(CliTest, EveryFailedUploadSaysWhatHappened) {
    const std::pair<const char *, const char *> faults[] = {
        {"short", "The reply of the QL540 is incomplete or not valid."},
        {"wrong-command", "The QL540 answered another command."},
        {"no-samples", "The memory of the QL540 holds no valid data."},
    };
    const QString up = Path("up.log");
    for (const auto &[kind, text] : faults) {
        Simulator sim(dir.path(), {"--fast", "--fault", kind, "--fault-command", "4"});
        const Result r = Run({"--lang", "en", "upload", "--port", sim.device, "-o", up});
        EXPECT_EQ(r.code, 1) << kind;
        EXPECT_TRUE(r.err.contains(QLatin1String(text))) << kind << ": " << qPrintable(r.err);
        EXPECT_FALSE(r.err.contains(QStringLiteral("Subscript"))) << kind;
        EXPECT_FALSE(QFile::exists(up)) << kind;
    }
    // At the real line speed the memory takes seconds to come: time to pull the plug.
    std::optional<Simulator> sim(std::in_place, dir.path(), QStringList{"--memory", "65536"});
    QProcess cli;
    cli.start(QStringLiteral(FLUXMERE_CLI), Args({"--lang", "en", "upload", "--port", sim->device, "-o", up}));
    QThread::msleep(3000);
    sim.reset();
    ASSERT_TRUE(cli.waitForFinished(30000));
    EXPECT_EQ(cli.exitCode(), 1);
    const QString err = QString::fromUtf8(cli.readAllStandardError());
    EXPECT_TRUE(err.contains(QStringLiteral("The link to the QL540 was lost"))) << qPrintable(err);
    EXPECT_FALSE(QFile::exists(up));
}

// Live mode prints each sample and leaves a log that loads, whatever stops it: its count,
// Ctrl+C as the Stop button, or a lost logger; a log that cannot be made starts nothing.
TEST_F(CliTest, LiveModeLeavesAClosedLogWhateverStopsIt) {
    std::optional<Simulator> sim(std::in_place, dir.path(), QStringList{"--fast"});
    const QString port = sim->device, rt = Path("rt.log");
    const Result r = Run({"--lang", "en", "live", "--port", port, "--count", "2", "-o", rt});
    ASSERT_EQ(r.code, 0) << qPrintable(r.err);
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("1  "))) << qPrintable(lines[0]);
    EXPECT_TRUE(lines[0].contains(QStringLiteral("Bx = 1,20 µT")));  // the regional decimal mark
    EXPECT_TRUE(ReadBytes(rt).contains("\r\n 2        \r\n"));
    // An earlier log stays unless the question is answered.
    EXPECT_EQ(Run({"live", "--port", port, "--count", "1", "-o", rt}).code, 1);
    EXPECT_EQ(Run({"live", "--port", port, "--count", "0"}).code, 64);
    const Result nowhere = Run({"--lang", "en", "live", "--port", port, "--count", "1", "-o", Path("no/such/rt.log")});
    EXPECT_EQ(nowhere.code, 1);
    EXPECT_TRUE(nowhere.err.contains(QStringLiteral("OpenLastLog"))) << qPrintable(nowhere.err);
    EXPECT_TRUE(nowhere.out.isEmpty());

    const QString interrupted = Path("interrupted.log"), lost = Path("lost.log");
    QProcess live;
    live.start(QStringLiteral(FLUXMERE_CLI), Args({"--lang", "en", "live", "--port", port, "--count", "100", "-o",
                                                   interrupted}));
    ASSERT_TRUE(live.waitForReadyRead(10000));  // the first sample is out
    ::kill(pid_t(live.processId()), SIGINT);
    ASSERT_TRUE(live.waitForFinished(10000));
    EXPECT_EQ(live.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(live.exitCode(), 128 + SIGINT);
    EXPECT_TRUE(QString::fromUtf8(live.readAllStandardError()).contains(QStringLiteral("Live mode interrupted")));
    EXPECT_GE(Run({"info", "--json", interrupted}).Json()["DataCount"].toInt(), 1);

    // The logger goes away mid-run: polling ends after its failures, without spinning.
    live.start(QStringLiteral(FLUXMERE_CLI), Args({"--lang", "en", "live", "--port", port, "--count", "100", "-o", lost}));
    ASSERT_TRUE(live.waitForReadyRead(10000));
    sim.reset();
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
    EXPECT_EQ(Run({"info", "--json", lost}).code, 0);
}

TEST_F(CliTest, RecoverClosesALogLeftOpenByACrash) {
    const QString crashed = Path("crashed.log");
    WriteBytes(crashed, fm::test::CrashedLiveLog());
    EXPECT_EQ(Run({"info", crashed}).code, 1);  // refused, and nobody said yes
    const Result r = Run({"--lang", "en", "recover", crashed});
    ASSERT_EQ(r.code, 0) << qPrintable(r.err);
    EXPECT_EQ(r.out, QStringLiteral("Log recovered: 2 samples.\n"));
    EXPECT_EQ(Run({"info", "--json", crashed}).Json()["DataCount"].toInt(), 2);
    EXPECT_TRUE(Run({"--lang", "en", "recover", crashed}).err.contains(QStringLiteral("not a real-time log left open")));
}

TEST_F(CliTest, ImportSurveyorWritesTheLogOnlyWhenDataCame) {
    const QString out = Path("surveyor.log");
    {
        Simulator sim = fm::test::SurveyorSimulator(
            dir.path(), {"--fast", "--start", "2026-03-02T08:00", "--blocks", "3", "--records", "40", "--gap", "5"});
        const Result r = Run({"--lang", "en", "import-surveyor", "--port", sim.device, "-o", out});
        ASSERT_EQ(r.code, 0) << qPrintable(r.err);
        EXPECT_TRUE(r.out.contains(QStringLiteral("Samples: 85")));
        EXPECT_EQ(Run({"info", "--json", out}).Json()["DataStart"].toString(), QStringLiteral("2026-03-02T08:00:00"));
        EXPECT_EQ(Run({"import-surveyor", "--port", sim.device}).code, 64);
    }
    // No blocks at all ends the import well, a block cut short does not: no file either way.
    for (const char *fault : {"zero-blocks", "cut-block"}) {
        Simulator sim = fm::test::SurveyorSimulator(
            dir.path(), {"--fast", "--blocks", "1", "--records", "10", "--fault", fault, "--fault-block", "0"});
        const Result r = Run({"import-surveyor", "--port", sim.device, "-o", Path("none.log")});
        EXPECT_EQ(r.code, 1) << fault;
        EXPECT_FALSE(r.err.isEmpty()) << fault;
        EXPECT_FALSE(QFile::exists(Path("none.log"))) << fault;
    }
}

// A "File Centralina" file: its figures by name, a log made of it, and the RF chart.
TEST_F(CliTest, FileCentralinaInfoConvertAndRfChart) {
    const QString csv = Path("unit.csv");
    WriteBytes(csv, "14/10/2026 08:00:00,0.10,0.20,0.30,12.5,0.35,0.37\n"
                    "14/10/2026 08:00:05,0.50,0.50,0.50,-100,1.5,0.87\n"
                    "14/10/2026 08:00:10,1.00,0.00,0.00,13.5,0.8,1\n");
    const Result r = Run({"info", "--json", csv});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    const QJsonObject o = r.Json();
    EXPECT_EQ(o["DataSource"].toString(), QStringLiteral("File Centralina"));
    EXPECT_TRUE(o["DataIsCsv"].toBool());
    EXPECT_EQ(o["DataStep"].toInt(), 5);
    EXPECT_EQ(o["RfMax"].toDouble(), 1.5);
    EXPECT_EQ(o["RfMin"].toDouble(), 0.35);   // the 32-bit value by its own digits
    EXPECT_EQ(o["AuxMean"].toDouble(), 12.5);  // one value behind: 13.5 is not in it
    EXPECT_TRUE(Run({"--lang", "en", "info", csv}).out.contains(QStringLiteral("RF field maximum (V/m): 1,5\n")));

    ASSERT_EQ(Run({"convert", csv, Path("unit.log")}).code, 0);
    EXPECT_EQ(Run({"info", "--json", Path("unit.log")}).Json()["DataSource"].toString(), QStringLiteral("File"));
    ASSERT_EQ(Run({"chart", csv, "--kind", "rf", "-o", Path("rf.png")}).code, 0);
    EXPECT_TRUE(ReadBytes(Path("rf.png")).startsWith("\x89PNG"));
}
