// The link against the QL540 simulator on a real pseudo-terminal: the port, the
// transaction and its failures, the codes, the session commands and the upload.
#include "acquisition/upload.h"
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
#include "shell/link_handlers.h"
#include "support/clock.h"
#include "support/recorder_host.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QRegularExpression>
#include <optional>

using namespace fm;
using test::SampleText;

namespace {
using test::RunEvents;
using test::Simulator;

class LinkTest : public ::testing::Test {
protected:
    void SetUp() override {
        host.defaultAnswer = true;  // "connect now?" and the like
        InstallLinkHandlers();
    }
    void TearDown() override {
        DropCommunication();
        Seriale().SetPortOpen(false);
        Shared().FailCount = 0;
    }
    // The simulator (always --fast) on "com1", and the link up to it.
    void Connect(const QStringList &args = {}) {
        sim.emplace(fresh.Dir().path(), QStringList{"--fast"} + args);
        ASSERT_FALSE(sim->device.isEmpty());
        ASSERT_TRUE(SelectPort(0));
        ASSERT_TRUE(InitCommunication());
    }
    // Keep-alive ticks driven by hand.
    static void StopTicks() {
        KillTimer(Shared().KeepAliveTimer);
        Shared().KeepAliveTimer = 0;
    }
    test::Fresh fresh;
    test::RecorderHost host;
    std::optional<Simulator> sim;
};
}  // namespace

TEST_F(LinkTest, PortCodesAndUploadMatchTheLogger) {
    // A session recorded in 2024, uploaded in 2026.
    test::ScopedClock today(DateFromParts(2026, 5, 1, 12, 0));
    Connect({"--memory", "8192", "--clock", "2024-03-03T09:30"});
    EXPECT_EQ(SerialPort::DevicePath(1), fresh.Path(QStringLiteral("com1")));
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
    EXPECT_EQ(d.DataStart, DateFromParts(2024, 3, 3, 9, 30));
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
    Connect();
    struct Case {
        const char *fault;
        int command;
        int status;  // the lamp's text
    };
    // Each of these ends a synchronous exchange as a failure, and the lamp says which.
    for (const Case c : {Case{"refuse", 7, 4340}, Case{"bad-crc", 7, 4341}, Case{"stray-byte", 7, 4342},
                         Case{"truncate", 7, 4342}, Case{"no-answer", 7, 3029}, Case{"wrong-command", 7, 4343}}) {
        SCOPED_TRACE(c.fault);
        sim->Say(QStringLiteral("fault %1 %2").arg(QLatin1String(c.fault)).arg(c.command));
        Shared().FailCount = 0;
        EXPECT_FALSE(ReadID());
        EXPECT_EQ(Shared().FailCount, 1);
        EXPECT_TRUE(Shared().CommOpen);
        EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("254"));
        EXPECT_EQ(host.commText, ResString(c.status));
    }
    // A settings block too short to read is a fault of the reception: reported, counted,
    // and the link goes on instead of holding the command in flight for ever.
    sim->Say(QStringLiteral("fault short 10"));
    Shared().FailCount = 0;
    EXPECT_FALSE(SendCommand(10, true, false, kReplyTimeoutMs));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("ReceiveCommand")));
    EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("254"));
    EXPECT_EQ(Shared().FailCount, 1);
    sim->Say(QStringLiteral("fault none"));
    EXPECT_TRUE(SendCommand(10, true, false, kReplyTimeoutMs));
    EXPECT_EQ(Shared().FailCount, 0);
    // Three failures in a row drop the link on the third.
    sim->Say(QStringLiteral("fault refuse 7"));
    EXPECT_FALSE(ReadID());
    EXPECT_FALSE(ReadID());
    EXPECT_TRUE(Shared().CommOpen);
    EXPECT_FALSE(ReadID());
    EXPECT_FALSE(Shared().CommOpen);
    EXPECT_EQ(Shared().KeepAliveTimer, 0);
    EXPECT_TRUE(host.enabled[6]);
    // The next command brings the link up again.
    sim->Say(QStringLiteral("fault none"));
    EXPECT_TRUE(ReadID());
    EXPECT_TRUE(Shared().CommOpen);
}

TEST_F(LinkTest, AsynchronousExchangesAndLateReplies) {
    Connect();
    StopTicks();
    KeepAlive();
    EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("3"));
    // A tick during a transaction does nothing.
    KeepAlive();
    EXPECT_EQ(Shared().FailCount, 0);
    RunEvents(500);
    EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("254"));
    EXPECT_EQ(Shared().FailCount, 0);

    // A reply later than its time-out is thrown away by the port event.
    sim->Say(QStringLiteral("fault late 3"));
    KeepAlive();
    RunEvents(2600);
    EXPECT_EQ(Shared().FailCount, 1);
    EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("254"));
    RunEvents(1500);
    EXPECT_EQ(Shared().FailCount, 1);
    // The late bytes do not join the next reply.
    sim->Say(QStringLiteral("fault none"));
    EXPECT_TRUE(ReadID());

    // A command while one is in flight is dropped and stops live polling.
    Shared().LiveTimer = SetTimer(3000, [] {});
    KeepAlive();
    EXPECT_FALSE(ReadID());
    EXPECT_EQ(Shared().LiveTimer, 0);
    RunEvents(400);
    // A failure counted as a time-out as well counts twice.
    sim->Say(QStringLiteral("fault bad-crc 3"));
    Shared().FailCount = 0;
    EXPECT_FALSE(SendCommand(3, true, true, kReplyTimeoutMs));
    EXPECT_EQ(Shared().FailCount, 2);
}

TEST_F(LinkTest, UploadFaultsLeaveTheDataSetAlone) {
    Connect({"--memory", "4096"});
    Data().DataSource = QStringLiteral("File");
    sim->Say(QStringLiteral("fault bad-signature"));
    EXPECT_FALSE(UploadData());
    EXPECT_EQ(host.LastBox(), ResString(3032));
    EXPECT_EQ(Data().DataSource, QStringLiteral("File"));
    sim->Say(QStringLiteral("fault silent-upload 4"));
    EXPECT_FALSE(UploadData());
    EXPECT_EQ(Data().DataSource, QStringLiteral("File"));
    EXPECT_GE(host.waitHidden, host.waitShown);
    sim->Say(QStringLiteral("fault no-samples"));
    EXPECT_FALSE(UploadData());
    EXPECT_EQ(host.LastBox(), ResString(3032));
    sim->Say(QStringLiteral("fault blank-start"));
    host.dateAnswer = DateFromParts(2013, 5, 6, 7, 8);
    ASSERT_TRUE(UploadData());
    EXPECT_EQ(host.dateAsked, 1);
    EXPECT_EQ(Data().DataStart, DateFromParts(2013, 5, 6, 7, 8));
    EXPECT_EQ(Data().DataCount, 571);
}

TEST_F(LinkTest, RepliesGoToTheHandlerOfTheirCommand) {
    Connect({"--memory", "4096"});
    Data().DataSource = QStringLiteral("File");
    int calls = 0;
    const auto answer = [&](ReplyEnd end) {
        SetReplyHandler(4, [&calls, end] {
            ++calls;
            return end;
        });
    };
    answer(ReplyEnd::Failed);  // a reply its handler finds bad counts as a failure
    EXPECT_FALSE(SendCommand(4, true, false, kReplyTimeoutMs));
    EXPECT_EQ(Shared().FailCount, 1);
    answer(ReplyEnd::Abandoned);  // a declined one does not
    EXPECT_FALSE(SendCommand(4, true, false, kReplyTimeoutMs));
    EXPECT_EQ(Shared().FailCount, 0);
    EXPECT_EQ(calls, 2);
    SetReplyHandler(4, nullptr);  // without a handler the reply is taken as it stands
    EXPECT_TRUE(SendCommand(4, true, false, kReplyTimeoutMs));
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(Data().DataSource, QStringLiteral("File"));
    EXPECT_GE(host.waitHidden, host.waitShown);
}

TEST_F(LinkTest, EveryMemorySizeUploadsAndSavesSampleForSample) {
    for (const int memory : {4096, 8192, 32768, 65536}) {
        SCOPED_TRACE(memory);
        const QString dump = fresh.Path(QStringLiteral("samples%1.txt").arg(memory));
        Simulator sim(fresh.Dir().path(), {"--fast", "--memory", QString::number(memory), "--dump-samples", dump});
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

TEST_F(LinkTest, CommandsWithoutPayloadCarryNoneAfterTheCodesAreWritten) {
    const QString log = fresh.Path(QStringLiteral("wire.txt"));
    Connect({"--log", log});
    StopTicks();
    Data().SetShortID(QStringLiteral("CAB-1"));
    ASSERT_TRUE(WriteID());
    KeepAlive();
    RunEvents(400);
    EXPECT_EQ(Shared().FailCount, 0);
    EXPECT_TRUE(SendCommand(10, true, false, kReplyTimeoutMs));
    EXPECT_TRUE(SendCommand(2, true, false, kReplyTimeoutMs));
    // What the logger saw: the 64 code bytes once, then three frames of six bytes.
    const QStringList in = QString::fromLatin1(test::ReadBytes(log))
                               .split(QLatin1Char('\n'))
                               .filter(QRegularExpression(QStringLiteral("^in ")));
    ASSERT_GE(in.size(), 4);
    EXPECT_TRUE(in[in.size() - 4].startsWith(QStringLiteral("in  70: 3E 00 43 08")));
    EXPECT_EQ(in[in.size() - 3], QStringLiteral("in  6: 3E 00 03 03 19 4D"));
    EXPECT_TRUE(in[in.size() - 2].startsWith(QStringLiteral("in  6: 3E 00 03 0A")));
    EXPECT_TRUE(in[in.size() - 1].startsWith(QStringLiteral("in  6: 3E 00 03 02")));
}

namespace {
// The start's steps as a list: what the dialog would tick and mark.
class StepRecorder : public StartProgress {
public:
    QList<int> states;
    int failed = -1;
    bool closed = false, ended = false;
    int keepAliveWhileWaiting = 0;
    void Begin() override {}
    void SetState(int step) override { states << step; }
    void MarkFailed(int step) override { failed = step; }
    void WaitForClose() override {
        closed = true;
        keepAliveWhileWaiting = Shared().KeepAliveTimer;
    }
    void End(bool) override { ended = true; }
};
}  // namespace

TEST_F(LinkTest, SessionStartStopsAtTheFailedStepAndRecovers) {
    test::ScopedClock today(DateFromParts(2026, 6, 1, 10, 0));
    Connect();
    Link().MonitorImage = {3, 0x05, 0, 0, 0, 0, 0, 0, 0, 0};
    // A refusal of the clock, the session block or the start marks lines 1, 2 and 4; so does
    // a lost reply. Each time the keep-alive runs again before the user closes the page.
    const std::tuple<const char *, int, int> faults[] = {
        {"refuse", 11, 0}, {"refuse", 12, 1}, {"refuse", 13, 3}, {"no-answer", 12, 1}, {"no-answer", 13, 3}};
    for (const auto &[fault, command, line] : faults) {
        SCOPED_TRACE(QStringLiteral("%1 %2").arg(QLatin1String(fault)).arg(command).toStdString());
        sim->Say(QStringLiteral("fault %1 %2").arg(QLatin1String(fault)).arg(command));
        StepRecorder steps;
        EXPECT_FALSE(StartMonitoraggio(steps));
        EXPECT_EQ(steps.failed, line);
        EXPECT_TRUE(steps.closed && steps.ended);
        EXPECT_TRUE(Shared().CommOpen);
        EXPECT_NE(steps.keepAliveWhileWaiting, 0);
        EXPECT_NE(Shared().KeepAliveTimer, 0);
        Shared().FailCount = 0;
    }
    // A session block that does not fit its bytes goes to the fault box after the clock was
    // set, and ends the same way.
    sim->Say(QStringLiteral("fault none"));
    const size_t boxes = host.boxes.size();
    Link().MonitorImage[1] = 0x100;
    StepRecorder overflow;
    EXPECT_FALSE(StartMonitoraggio(overflow));
    ASSERT_EQ(host.boxes.size(), boxes + 1);
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("StartMonitoraggio")));
    EXPECT_EQ(overflow.failed, 1);
    EXPECT_TRUE(overflow.closed && overflow.ended);
    EXPECT_NE(Shared().KeepAliveTimer, 0);
    EXPECT_EQ(Shared().CurrentCommand, QStringLiteral("254"));

    Link().MonitorImage[1] = 0x05;
    StepRecorder steps;
    ASSERT_TRUE(StartMonitoraggio(steps));
    EXPECT_EQ(steps.states, (QList<int>{0, 1, 2, 3, 4}));
    EXPECT_FALSE(Shared().CommOpen);                             // the logger works alone now
    ASSERT_TRUE(SendCommand(10, true, false, kReplyTimeoutMs));  // brings the link up again
    EXPECT_EQ(Link().MonitorSettings[16], 0x03);                 // running
    EXPECT_EQ(Link().MonitorSettings[6], 0x05);
    // The clock went out with today's date, 2026 as bits 2.
    uint8_t clock[5];
    for (int i = 0; i < 5; ++i) clock[i] = uint8_t(Link().MonitorSettings[size_t(i)]);
    EXPECT_EQ(clock[3], 0x01 + 2 * 64);
    EXPECT_EQ(DecodeWireDate(clock), DateFromParts(2026, 6, 1, 10, 0));
    ASSERT_TRUE(StopMonitor());
    ASSERT_TRUE(SendCommand(10, true, false, kReplyTimeoutMs));
    EXPECT_EQ(Link().MonitorSettings[16], 0x07);
    EXPECT_EQ(Link().MonitorSettings[18], 4);
}
