// Live mode: the conversion of live replies, the drawing's geometry and meters, the
// real-time log, and whole runs against the simulator on a pseudo-terminal.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "files/log_recovery.h"
#include "link/link_state.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "link/timers.h"
#include "link/transaction.h"
#include "realtime/live_display.h"
#include "realtime/live_intake.h"
#include "realtime/live_mode.h"
#include "realtime/live_record.h"
#include "realtime/realtime_log.h"
#include "realtime/vector_geometry.h"
#include "shell/link_handlers.h"
#include "support/recorder_host.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QFileInfo>
#include <algorithm>
#include <optional>
#include <cmath>

using namespace fm;

namespace {
template <class T>
concept TakesResultant = requires(T r) { ResultantMeter(r, 2.0, 200.0); };
std::array<uint8_t, 13> Reply(int x, int y, int z, uint8_t flags) {
    return {
        0x3C,       0,     9, 2, uint8_t(x >> 8), uint8_t(x), uint8_t(y >> 8), uint8_t(y), uint8_t(z >> 8),
        uint8_t(z), flags, 0, 0};
}

// Records what the viewer is asked to do.
struct RecordedView : LiveDisplay {
    bool active = true;
    int infos = 0, clears = 0, drawn = 0;
    bool live = false, running = false;
    InfoTexts last;
    bool Active() const override { return active; }
    void ShowInfo(const InfoTexts &t) override {
        ++infos;
        last = t;
    }
    void ClearChart() override { ++clears; }
    void SetButtons(bool on) override { live = on; }
    void SetStatePicture(bool on) override { running = on; }
    void AggiornaDisegno(float, float, float, bool) override { ++drawn; }
};
}  // namespace

TEST(LiveConversion, RangesZeroRuleFlagsAndBattery) {
    auto value = [](int raw, uint8_t flags, double low) {
        const auto r = Reply(raw, 0, 0, flags);
        return ConvertLiveReply(r.data(), low, 200).sample[0];
    };
    EXPECT_FLOAT_EQ(value(512, 0, 2), 1.00f);
    EXPECT_FLOAT_EQ(value(512, 0, 5), 2.50f);
    EXPECT_FLOAT_EQ(value(512, 1, 2), 100.00f);
    EXPECT_EQ(value(3, 0, 2), 0.0f);  // the lowest counts read as no field
    EXPECT_FLOAT_EQ(value(4, 0, 2), 0.01f);
    EXPECT_FLOAT_EQ(value(0x0102, 0, 2), 0.50f);  // the zero rule needs a high byte of 0
    EXPECT_FLOAT_EQ(value(3, 1, 2), 0.59f);       // and the sensitive range

    // X and Z on the wide range, Y on the sensitive one; the flags are shifted past the axes.
    const auto r = Reply(512, 512, 512, 0x85);
    const LiveReading got = ConvertLiveReply(r.data(), 2, 200);
    EXPECT_FLOAT_EQ(got.sample[0], 100.0f);
    EXPECT_FLOAT_EQ(got.sample[1], 1.0f);
    EXPECT_FLOAT_EQ(got.sample[2], 100.0f);
    EXPECT_FLOAT_EQ(got.sample[3], 141.42f);  // from the rounded axes
    EXPECT_TRUE(got.batteryFlag);
    EXPECT_EQ(got.flagsAfter, 0x10);  // 0x85 >> 3
    EXPECT_EQ(ConvertLiveReply(Reply(0, 0, 0, 5).data(), 2, 200).flagsAfter, 0);
}

TEST(LiveGeometry, TicksOriginScaleAndMeters) {
    const DrawArea a;
    // 1 µT on X at scale "1" puts the tip on the first tick of the horizontal axis.
    const VectorPlacement one = PlaceVector(a, 1, 0, 0, 3);
    EXPECT_DOUBLE_EQ(one.sx, a.T / 5.0);
    EXPECT_DOUBLE_EQ(one.sy, 0);
    const std::vector<QLineF> fixed = FixedLines(a);
    EXPECT_DOUBLE_EQ(fixed[12].p1().x(), one.vettore.p2().x());  // the first tick of the horizontal axis
    // The origin, and a field far beyond the arrow head at the finest scale.
    const VectorPlacement zero = PlaceVector(a, 0, 0, 0, 0);
    EXPECT_EQ(zero.vettore.p1(), zero.vettore.p2());
    EXPECT_EQ(zero.vettore.p1(), QPointF(10, a.H - 10));
    EXPECT_DOUBLE_EQ(PlaceVector(a, 1, 0, 0, 0).sx, 2.0 * a.T);
    // The oblique axis at exactly 60 degrees: 1 µT on Y lands on its first tick.
    const VectorPlacement y = PlaceVector(a, 0, 1, 0, 3);
    EXPECT_NEAR(y.sx, a.T / 5.0 * 0.5, 1e-9);
    EXPECT_NEAR(y.sy, a.T / 5.0 * std::sqrt(3.0) / 2, 1e-9);

    // A meter switches range at the low full scale; the resultant at that times the root of 3.
    test::ScopedLocale us("en_US");
    const MeterReading below = AxisMeter(0, 1.99, 2, 200), at = AxisMeter(0, 2.0, 2, 200);
    EXPECT_FALSE(below.high);
    EXPECT_EQ(below.text, QStringLiteral("Bx = 1.99 µT"));
    EXPECT_TRUE(at.high);
    EXPECT_EQ(at.text, QStringLiteral("Bx = 2.0 µT"));
    EXPECT_DOUBLE_EQ(at.fraction, 0.01);
    EXPECT_FALSE(ResultantMeter(3.464, 2, 200).high);
    const MeterReading r = ResultantMeter(3.4642, 2, 200);
    EXPECT_TRUE(r.high);
    EXPECT_DOUBLE_EQ(r.fullScale, 346.41);
    EXPECT_DOUBLE_EQ(ResultantMeter(1.0, 2, 200).fullScale, 3.46);
    EXPECT_EQ(r.text, QStringLiteral("RSS  = 3.46 µT"));
    EXPECT_EQ(TipCaption(0, 0, 0, {below.format, below.format, below.format}),
              QStringLiteral("B (0.00 : 0.00 : 0.00)"));
    // A sample's axes are floats and read as their own digits: 0.165 rounds to 0.16 and
    // 2.45 to 2.4, half to even, as the data list rounds them.
    EXPECT_EQ(AxisMeter(1, 0.165f, 2, 200).text, QStringLiteral("By = 0.16 µT"));
    EXPECT_EQ(AxisMeter(2, 2.45f, 2, 200).text, QStringLiteral("Bz = 2.4 µT"));
    EXPECT_EQ(TipCaption(0.165f, 2.45f, 0.1f + 0.2f, {below.format, at.format, below.format}),
              QStringLiteral("B (0.16 : 2.4 : 0.30)"));
    // The resultant is worked out in doubles; a stored float one is not taken.
    static_assert(TakesResultant<double> && !TakesResultant<float>);

    // The strip chart's axis: a first zero sample, and logarithmic with a zero maximum.
    EXPECT_DOUBLE_EQ(StripAxis(false, 0, 0).maximum, 0.0001);
    EXPECT_DOUBLE_EQ(StripAxis(true, 0, 0).maximum, 0.0002);
    EXPECT_DOUBLE_EQ(StripAxis(true, 3, 1).maximum, 4);
    const AxisLimits lin = StripAxis(false, 4, 1);
    EXPECT_DOUBLE_EQ(lin.maximum, 4.3);
    EXPECT_DOUBLE_EQ(lin.increment, 0.1);
}

class LiveLogTest : public ::testing::Test {
protected:
    void SetUp() override { SetRealTimeLogPath(QString()); }
    test::Fresh fresh;
    test::RecorderHost host;
};

TEST_F(LiveLogTest, CountFilledAtTheCloseAndReadBack) {
    Data().SetShortID(QStringLiteral("  CAB-1 "));
    Data().SetLongID(QStringLiteral("Via Po 1"));
    ASSERT_TRUE(OpenLastLog());
    EXPECT_EQ(Shared().RealTimeLogFile, 1);
    AppendLiveLine(1.2f, 0.5f, 0.15f);
    AppendLiveLine(0, 0, 0);
    AppendLiveLine(12.5f, 0.01f, 100);
    CloseLastLog();
    EXPECT_EQ(Shared().RealTimeLogFile, 0);
    const QByteArray expected = "\"Field Activity Log\"\r\n\"" + GeneralDate(Live().RTStart).toLatin1() +
                                "\"\r\n\" 3s\"\r\n 3        \r\n\"CAB-1\"\r\n\"Via Po 1\"\r\n"
                                "\"" +
                                FormatNumber(1.2, u"0.00 ").toLatin1() +
                                FormatNumber(0.5, u"0.00 ").toLatin1() +
                                FormatNumber(0.15, u"0.00 ").toLatin1() + " 0\"\r\n";
    const QByteArray bytes = test::ReadBytes(RealTimeLogPath());
    EXPECT_EQ(bytes.left(expected.size()), expected);

    ASSERT_TRUE(LoadFile(RealTimeLogPath()));
    EXPECT_EQ(Data().DataCount, 3);
    EXPECT_EQ(Data().DataStart, Live().RTStart);
    EXPECT_EQ(Data().DataStep, 3);
    EXPECT_FLOAT_EQ(Data().DataZ[3], 100.0f);
}

TEST_F(LiveLogTest, StopBeforeTheFirstSampleIsRefusedOnLoad) {
    ASSERT_TRUE(OpenLastLog());
    CloseLastLog();
    EXPECT_TRUE(test::ReadBytes(RealTimeLogPath()).contains("\r\n 0        \r\n"));
    EXPECT_FALSE(LoadFile(RealTimeLogPath()));
    EXPECT_EQ(host.LastBox(), ResString(25));
}

class LiveRunTest : public LiveLogTest {
protected:
    void SetUp() override {
        LiveLogTest::SetUp();
        host.defaultAnswer = true;
        InstallLinkHandlers();
        SetLiveDisplay(&view);
    }
    void TearDown() override {
        SetLiveDisplay(nullptr);
        SetLivePeriodForTests(3000);
        DropCommunication();
        Seriale().SetPortOpen(false);
        Shared().FailCount = 0;
        Shared().LowRange = 2.0f;
    }
    // The simulated logger on "com1", the link up to it.
    void Connect(const QStringList &args) {
        sim.emplace(fresh.Dir().path(), QStringList{"--fast"} + args);
        ASSERT_TRUE(SelectPort(0));
        ASSERT_TRUE(InitCommunication());
    }
    void RunUntil(int samples, int limitMs) {
        QElapsedTimer t;
        t.start();
        while (Live().RTCount < samples && Shared().LiveTimer != 0 && t.elapsed() < limitMs)
            test::RunEvents(20);
    }
    RecordedView view;
    std::optional<test::Simulator> sim;
};

TEST_F(LiveRunTest, DozensOfPollsWithARefusalLoggedAndReadBack) {
    Connect({"--battery-low"});
    ASSERT_NE(Shared().KeepAliveTimer, 0);
    SetLivePeriodForTests(150);  // short, yet longer than a reply takes on a busy machine
    ASSERT_TRUE(RealTimeView(QStringLiteral("Start")));
    EXPECT_EQ(Shared().KeepAliveTimer, 0);  // the keep-alive pauses while live mode runs
    EXPECT_TRUE(view.running);
    EXPECT_FALSE(host.enabled[11] || host.enabled[10] || host.enabled[7]);
    EXPECT_EQ(Live().RTShortID, QStringLiteral("QL540-SIM"));
    RunUntil(12, 20000);
    sim->Say(QStringLiteral("fault refuse 2 once"));  // one poll refused: no sample for it
    RunUntil(30, 20000);
    WaitForIdleLink();
    RealTimeView(QStringLiteral("Stop"));
    EXPECT_NE(Shared().KeepAliveTimer, 0);
    EXPECT_EQ(Shared().LiveTimer, 0);
    EXPECT_FALSE(view.running);

    const LiveRecord &rt = Live();
    ASSERT_GE(rt.RTCount, 30);
    EXPECT_EQ(host.battImage, 2);
    EXPECT_EQ(view.drawn, rt.RTCount);
    // The first sample is the simulator's field at its start: 1.2, 0.5, 0.15 µT.
    EXPECT_FLOAT_EQ(rt.RTX[1], 1.20f);
    EXPECT_FLOAT_EQ(rt.RTY[1], 0.50f);
    EXPECT_FLOAT_EQ(rt.RTZ[1], 0.15f);
    double sum = 0, lo = 1e9, hi = 0;
    for (int i = 1; i <= rt.RTCount; ++i) {
        sum += rt.RTValue[size_t(i)];
        lo = std::min(lo, rt.RTValue[size_t(i)]);
        hi = std::max(hi, rt.RTValue[size_t(i)]);
    }
    EXPECT_FLOAT_EQ(rt.RTMax, float(hi));
    EXPECT_FLOAT_EQ(rt.RTMin, float(lo));
    EXPECT_NEAR(rt.RTMean, sum / rt.RTCount, 1e-4);
    EXPECT_EQ(view.last.count, QString::number(rt.RTCount));
    EXPECT_EQ(view.last.stop, GeneralDate(rt.SampleDate(rt.RTCount)));

    // The log has a line a sample and its count, and opens as the same measurement.
    const QList<QByteArray> lines = test::ReadBytes(RealTimeLogPath()).split('\n');
    EXPECT_EQ(lines[3], Str(rt.RTCount).toLatin1().leftJustified(10, ' ') + '\r');
    ASSERT_EQ(lines.size(), 6 + rt.RTCount + 1);
    ASSERT_TRUE(LoadFile(RealTimeLogPath()));
    EXPECT_EQ(Data().DataCount, rt.RTCount);
    for (int i = 1; i <= rt.RTCount; ++i) ASSERT_EQ(Data().DataX[size_t(i)], rt.RTX[size_t(i)]) << i;
    EXPECT_FLOAT_EQ(Data().DataMax, rt.RTMax);
    EXPECT_EQ(Data().DataStart, rt.RTStart);
}

TEST_F(LiveRunTest, ALostReplyIsOneMissingSampleAndPollingGoesOn) {
    Connect({});
    // The real period: a poll's time-out (2.9 s) ends before the next poll.
    ASSERT_TRUE(RealTimeView(QStringLiteral("Start")));
    RunUntil(1, 5000);
    ASSERT_EQ(Live().RTCount, 1);
    sim->Say(QStringLiteral("fault no-answer 2 once"));
    test::RunEvents(3300);  // the lost poll
    EXPECT_EQ(Live().RTCount, 1);
    EXPECT_NE(Shared().LiveTimer, 0);
    RunUntil(2, 6000);
    EXPECT_EQ(Live().RTCount, 2);
    EXPECT_EQ(Shared().FailCount, 0);
    WaitForIdleLink();
    RealTimeView(QStringLiteral("Stop"));
    // Dates follow the count, not the clock: the lost reply shifted the second sample back one step.
    EXPECT_EQ(GeneralDate(Live().SampleDate(2)),
              GeneralDate(DateAdd(QStringLiteral("s"), 3, Live().RTStart)));
}

TEST_F(LiveRunTest, WithoutIdentificationTheSensitiveRangeIsFiveMicrotesla) {
    Connect({"--fault", "refuse", "--fault-command", "7"});
    SetLivePeriodForTests(150);
    ASSERT_TRUE(RealTimeView(QStringLiteral("Start")));
    EXPECT_FLOAT_EQ(Shared().LowRange, 5.0f);
    EXPECT_EQ(Live().RTShortID, QStringLiteral("(Nessun ID)"));
    EXPECT_EQ(view.last.longId, QStringLiteral("-"));
    RunUntil(1, 5000);
    WaitForIdleLink();
    RealTimeView(QStringLiteral("Stop"));
    EXPECT_FLOAT_EQ(Live().RTY[1], 1.25f);  // 256 counts of 5 µT full scale
}

// A full disk in the middle of a run: live mode stops at the first line that does not
// get there, with its message, and the log keeps a count that matches its lines.
TEST_F(LiveRunTest, AFullDiskStopsLiveModeWithALogThatLoads) {
    Connect({});
    SetLivePeriodForTests(150);
    ASSERT_TRUE(RealTimeView(QStringLiteral("Start")));
    RunUntil(3, 10000);
    {
        // A file-size limit is a full disk for whoever writes: the next lines fail.
        test::FileSizeLimit full(QFileInfo(RealTimeLogPath()).size() + 40);
        RunUntil(1000, 10000);
    }
    EXPECT_EQ(Shared().LiveTimer, 0);
    EXPECT_TRUE(Live().LogFailed);
    EXPECT_EQ(host.LastBox(), ResString(4405).arg(Live().RealTimeLines));
    EXPECT_FALSE(view.running);
    const QList<QByteArray> lines = test::ReadBytes(RealTimeLogPath()).split('\n');
    ASSERT_EQ(lines.size(), 6 + Live().RealTimeLines + 1);  // no piece of a line behind the last
    EXPECT_TRUE(lines.last().isEmpty());
    EXPECT_GE(Live().RealTimeLines, 3);
    ASSERT_TRUE(LoadFile(RealTimeLogPath()));
    EXPECT_EQ(Data().DataCount, Live().RealTimeLines);
}

// A log left open by a crash: its complete lines come back, a half-written one does not.
TEST_F(LiveLogTest, AnUnclosedLogIsRecoveredWithItsCompleteLines) {
    ASSERT_TRUE(OpenLastLog());
    for (int i = 0; i < 4; ++i) AppendLiveLine(1.0f + float(i), 0.5f, 0.25f);
    const QString path = RealTimeLogPath();
    // The process dies here: no close, and a line only half on disk.
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::Append));
        f.write("\"9.99 9.");
    }
    const QString copy = fresh.Dir().filePath(QStringLiteral("crashed.log"));
    ASSERT_TRUE(QFile::copy(path, copy));
    EXPECT_EQ(UnclosedLogLines(copy), std::optional<qint64>(4));
    // Declined: refused as before, and left as it was.
    host.defaultAnswer = false;
    EXPECT_FALSE(LoadFile(copy));
    EXPECT_EQ(host.LastBox(), ResString(25));
    EXPECT_TRUE(std::any_of(host.boxes.begin(), host.boxes.end(), [](const test::Box &b) {
        return b.text == ResString(4401).arg(QStringLiteral("crashed.log")).arg(4);
    }));
    // Accepted: recovered in place, then loaded.
    host.defaultAnswer = true;
    ASSERT_TRUE(LoadFile(copy));
    EXPECT_EQ(Data().DataCount, 4);
    EXPECT_FLOAT_EQ(Data().DataX[4], 4.0f);
    EXPECT_FALSE(test::ReadBytes(copy).contains("9.99"));
    EXPECT_FALSE(UnclosedLogLines(copy).has_value());  // closed now
    // A closed log, or any other file, is no candidate.
    EXPECT_FALSE(UnclosedLogLines(fresh.Dir().filePath(QStringLiteral("none.log"))).has_value());
    EXPECT_FALSE(RecoverLog(copy).has_value());
}
