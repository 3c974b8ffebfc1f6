// The link against the QL540 simulator on a real pseudo-terminal: the port, the
// transaction and its failures, the codes, the session commands and the upload.
#include "acquisition/upload.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "link/link_state.h"
#include "link/operations.h"
#include "link/packet.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "link/timers.h"
#include "link/transaction.h"
#include "support/recorder_host.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

using namespace fm;

namespace {
// A sample as the simulator's dump writes it.
QString SampleText(const MeasurementData &d, int i) {
    return QStringLiteral("%1 %2 %3")
        .arg(d.DataX[size_t(i)], 0, 'f', 2)
        .arg(d.DataY[size_t(i)], 0, 'f', 2)
        .arg(d.DataZ[size_t(i)], 0, 'f', 2);
}

using test::RunEvents;
using test::Simulator;

class LinkTest : public ::testing::Test {
protected:
    void SetUp() override {
        host.defaultAnswer = true;  // "connect now?" and the like
        SetWritableDir(fresh.Dir().path());
        InstallLinkHandlers();
    }
    void TearDown() override {
        DropCommunication();
        Seriale().SetPortOpen(false);
        Shared().FailCount = 0;
    }
    test::Fresh fresh;
    test::RecorderHost host;
};
}  // namespace

TEST_F(LinkTest, PortCodesAndUploadMatchTheLogger) {
    Simulator sim(fresh.Dir().path(),
                  {QStringLiteral("--fast"), QStringLiteral("--memory"), QStringLiteral("8192"),
                   QStringLiteral("--dump-samples"), fresh.Path(QStringLiteral("samples.txt"))});
    ASSERT_FALSE(sim.device.isEmpty());
    EXPECT_EQ(SerialPort::DevicePath(1), fresh.Path(QStringLiteral("com1")));
    ASSERT_TRUE(SelectPort(0));
    ASSERT_TRUE(InitCommunication());
    EXPECT_TRUE(Shared().CommOpen);
    EXPECT_NE(Shared().KeepAliveTimer, 0);
    EXPECT_EQ(Shared().MonitorState, 0);  // the simulated session has ended

    ASSERT_TRUE(ReadID());
    EXPECT_EQ(Data().ShortID.trimmed(), QStringLiteral("QL540-SIM"));
    Data().SetShortID(QStringLiteral("CABINA-7"));
    Data().SetLongID(QStringLiteral("Via Roma 3"));
    ASSERT_TRUE(WriteID());
    Data().SetShortID(QString());
    ASSERT_TRUE(ReadID());
    EXPECT_EQ(Data().ShortID.trimmed(), QStringLiteral("CABINA-7"));
    EXPECT_EQ(Data().LongID.trimmed(), QStringLiteral("Via Roma 3"));

    ASSERT_TRUE(UploadData());
    const MeasurementData &d = Data();
    EXPECT_EQ(d.DataSource, QStringLiteral("Upload"));
    EXPECT_FALSE(d.DataSaved);
    const QStringList expected =
        QString::fromLatin1(test::ReadBytes(fresh.Path(QStringLiteral("samples.txt"))))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(d.DataCount, 1156);  // 8096 bytes hold 1156 whole samples
    ASSERT_EQ(expected.size(), d.DataCount);
    for (int i = 1; i <= d.DataCount; ++i) ASSERT_EQ(SampleText(d, i), expected[i - 1]) << "sample " << i;
    EXPECT_EQ(d.DataStart, DateFromParts(2014, 3, 3, 9, 30));
    EXPECT_EQ(d.DataStep, 10);
    EXPECT_EQ(d.DataStepUnit, QStringLiteral("n"));
    EXPECT_EQ(d.DataStopCode, 1);
    EXPECT_GE(host.waitShown, 1);
    EXPECT_GE(host.waitHidden, host.waitShown);  // the wait window is never left up
    // The share shown only grows, and ends at the whole frame as its length field tells it.
    ASSERT_FALSE(host.shares.empty());
    EXPECT_EQ(host.shares.back(), std::make_pair(int(RxLength()), int(RxLength())));
    for (size_t i = 1; i < host.shares.size(); ++i) EXPECT_GE(host.shares[i].first, host.shares[i - 1].first);
}

TEST_F(LinkTest, FailuresAreCountedAndDropTheLinkOnTheThird) {
    Simulator sim(fresh.Dir().path(), {QStringLiteral("--fast")});
    ASSERT_TRUE(SelectPort(0));
    ASSERT_TRUE(InitCommunication());
    struct Case {
        const char *fault;
        int command;
    };
    // Each of these ends a synchronous exchange as a failure.
    for (const Case c : {Case{"refuse", 7}, Case{"bad-crc", 7}, Case{"stray-byte", 7}, Case{"truncate", 7},
                         Case{"no-answer", 7}}) {
        SCOPED_TRACE(c.fault);
        sim.Say(QStringLiteral("fault %1 %2").arg(QLatin1String(c.fault)).arg(c.command));
        Shared().FailCount = 0;
        EXPECT_FALSE(ReadID());
        EXPECT_EQ(Shared().FailCount, 1);
        EXPECT_TRUE(Shared().CommOpen);
        EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("254"));
    }
    // A valid reply to another command is taken as what it says.
    sim.Say(QStringLiteral("fault wrong-command 7"));
    EXPECT_TRUE(ReadID());
    // Three failures in a row drop the link on the third.
    sim.Say(QStringLiteral("fault refuse 7"));
    EXPECT_FALSE(ReadID());
    EXPECT_FALSE(ReadID());
    EXPECT_TRUE(Shared().CommOpen);
    EXPECT_FALSE(ReadID());
    EXPECT_FALSE(Shared().CommOpen);
    EXPECT_EQ(Shared().KeepAliveTimer, 0);
    EXPECT_TRUE(host.enabled[6]);
    // The next command brings the link up again.
    sim.Say(QStringLiteral("fault none"));
    EXPECT_TRUE(ReadID());
    EXPECT_TRUE(Shared().CommOpen);
}

TEST_F(LinkTest, AsynchronousExchangesAndLateReplies) {
    Simulator sim(fresh.Dir().path(), {QStringLiteral("--fast")});
    ASSERT_TRUE(SelectPort(0));
    ASSERT_TRUE(InitCommunication());
    KillTimer(Shared().KeepAliveTimer);  // ticks are driven by hand here
    Shared().KeepAliveTimer = 0;
    KeepAlive();
    EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("3"));
    // A tick during a transaction does nothing.
    KeepAlive();
    EXPECT_EQ(Shared().FailCount, 0);
    RunEvents(500);
    EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("254"));
    EXPECT_EQ(Shared().FailCount, 0);

    // A reply later than its time-out is thrown away by the port event.
    sim.Say(QStringLiteral("fault late 3"));
    KeepAlive();
    RunEvents(2600);
    EXPECT_EQ(Shared().FailCount, 1);
    EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("254"));
    RunEvents(1500);
    EXPECT_EQ(Shared().FailCount, 1);
    // The late bytes do not join the next reply.
    sim.Say(QStringLiteral("fault none"));
    EXPECT_TRUE(ReadID());

    // A command while one is in flight is dropped and stops live polling.
    sim.Say(QStringLiteral("fault none"));
    Shared().LiveTimer = SetTimer(3000, [] {});
    KeepAlive();
    EXPECT_FALSE(ReadID());
    EXPECT_EQ(Shared().LiveTimer, 0);
    RunEvents(400);
    // A failure counted as a time-out as well counts twice.
    sim.Say(QStringLiteral("fault bad-crc 3"));
    Shared().FailCount = 0;
    EXPECT_FALSE(SendCommand(3, true, true, kReplyTimeoutMs));
    EXPECT_EQ(Shared().FailCount, 2);
}

TEST_F(LinkTest, UploadFaultsLeaveTheDataSetAlone) {
    Simulator sim(fresh.Dir().path(),
                  {QStringLiteral("--fast"), QStringLiteral("--memory"), QStringLiteral("4096")});
    ASSERT_TRUE(SelectPort(0));
    ASSERT_TRUE(InitCommunication());
    Data().DataSource = QStringLiteral("File");
    sim.Say(QStringLiteral("fault bad-signature"));
    EXPECT_FALSE(UploadData());
    EXPECT_EQ(host.LastBox(), ResString(3032));
    EXPECT_EQ(Data().DataSource, QStringLiteral("File"));
    sim.Say(QStringLiteral("fault silent-upload 4"));
    EXPECT_FALSE(UploadData());
    EXPECT_EQ(Data().DataSource, QStringLiteral("File"));
    EXPECT_GE(host.waitHidden, host.waitShown);
    sim.Say(QStringLiteral("fault no-samples"));
    EXPECT_FALSE(UploadData());
    EXPECT_EQ(host.LastBox(), ResString(3032));
    sim.Say(QStringLiteral("fault blank-start"));
    host.dateAnswer = DateFromParts(2013, 5, 6, 7, 8);
    ASSERT_TRUE(UploadData());
    EXPECT_EQ(host.dateAsked, 1);
    EXPECT_EQ(Data().DataStart, DateFromParts(2013, 5, 6, 7, 8));
    EXPECT_EQ(Data().DataCount, 571);
}

TEST_F(LinkTest, EveryMemorySizeUploadsAndSavesSampleForSample) {
    for (const int memory : {4096, 8192, 32768, 65536}) {
        SCOPED_TRACE(memory);
        const QString dump = fresh.Path(QStringLiteral("samples%1.txt").arg(memory));
        Simulator sim(fresh.Dir().path(), {QStringLiteral("--fast"), QStringLiteral("--memory"),
                                           QString::number(memory), QStringLiteral("--dump-samples"), dump});
        ASSERT_TRUE(SelectPort(0));
        ASSERT_TRUE(UploadData());
        const QString log = fresh.Path(QStringLiteral("up%1.log").arg(memory));
        ASSERT_TRUE(SaveFile(log));
        Data() = MeasurementData{};
        ASSERT_TRUE(LoadFile(log));
        const QStringList expected =
            QString::fromLatin1(test::ReadBytes(dump)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        const MeasurementData &d = Data();
        ASSERT_EQ(d.DataCount, expected.size());
        EXPECT_EQ(d.DataCount, std::min((memory - 96) / 7, 9348));
        for (int i = 1; i <= d.DataCount; ++i) ASSERT_EQ(SampleText(d, i), expected[i - 1]) << "sample " << i;
        DropCommunication();
        Seriale().SetPortOpen(false);
    }
}

namespace {
// The start's steps as a list: what the dialog would tick and mark.
class StepRecorder : public StartProgress {
public:
    QList<int> states;
    int failed = -1;
    void Begin() override {}
    void SetState(int step) override { states << step; }
    void MarkFailed(int step) override { failed = step; }
    void WaitForClose() override {}
    void End(bool) override {}
};
}  // namespace

TEST_F(LinkTest, SessionStartStopsAtTheRefusedCommand) {
    Simulator sim(fresh.Dir().path(), {QStringLiteral("--fast")});
    ASSERT_TRUE(SelectPort(0));
    ASSERT_TRUE(InitCommunication());
    const QDateTime now(QDate(2014, 6, 1), QTime(10, 0));
    Link().MonitorImage = {3, 0x05, 0, 0, 0, 0, 0, 0, 0, 0};
    // A refusal of the clock, the session block or the start marks lines 1, 2 and 4.
    const std::pair<int, int> refusals[] = {{11, 0}, {12, 1}, {13, 3}};
    for (const auto &[command, line] : refusals) {
        SCOPED_TRACE(command);
        sim.Say(QStringLiteral("fault refuse %1").arg(command));
        StepRecorder steps;
        EXPECT_FALSE(StartMonitoraggio(steps, now));
        EXPECT_EQ(steps.failed, line);
        EXPECT_TRUE(Shared().CommOpen);
        EXPECT_NE(Shared().KeepAliveTimer, 0);  // supervision resumes after a failed start
        Shared().FailCount = 0;
    }
    sim.Say(QStringLiteral("fault none"));
    StepRecorder steps;
    ASSERT_TRUE(StartMonitoraggio(steps, now));
    EXPECT_EQ(steps.states, (QList<int>{0, 1, 2, 3, 4}));
    EXPECT_FALSE(Shared().CommOpen);                             // the logger works alone now
    ASSERT_TRUE(SendCommand(10, true, false, kReplyTimeoutMs));  // brings the link up again
    EXPECT_EQ(Link().MonitorSettings[16], 0x03);                 // running
    EXPECT_EQ(Link().MonitorSettings[6], 0x05);
    ASSERT_TRUE(StopMonitor());
    ASSERT_TRUE(SendCommand(10, true, false, kReplyTimeoutMs));
    EXPECT_EQ(Link().MonitorSettings[16], 0x07);
    EXPECT_EQ(Link().MonitorSettings[18], 4);
}
